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

    void saveState(QSettings& settings) const;
    void restoreState(const QSettings& settings);

Q_SIGNALS:
    void openRequested(const QString& file);
    void changed();

private:
    void set(const QStringList& files);

    QStringList m_files;
};

} // namespace workbench
