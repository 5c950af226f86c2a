#pragma once

#include <QMenu>
#include <QStringList>

class QSettings;

namespace workbench {

/// The documents that were open last, as a menu: the newest on top.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget* parent = nullptr);

    const QStringList& files() const;
    /// Puts \p file on top. The oldest one above ten goes.
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
