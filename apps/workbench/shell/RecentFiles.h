#pragma once

#include <QMenu>
#include <QStringList>

class QSettings;

namespace workbench {

/// A menu of the documents that were open last, the newest on top.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget* parent = nullptr);

    const QStringList& files() const;
    /// Puts \p file on top. Above ten files, the oldest is removed.
    void add(const QString& file);
    void clearAll();

    /// Puts the files that were added since the last call of `markSaved` on top of those in \p settings, to which
    /// another program may have added some meanwhile.
    void saveState(QSettings& settings) const;
    /// Says that \p settings are in their file now. Takes over what other programs have added.
    void markSaved(const QSettings& settings);
    void restoreState(const QSettings& settings);

Q_SIGNALS:
    void openRequested(const QString& file);
    void changed();

private:
    void set(const QStringList& files);

    QStringList m_files;
    QStringList m_added; ///< since the last save, the newest at the end
    bool m_isCleared = false; ///< since the last save
};

} // namespace workbench
