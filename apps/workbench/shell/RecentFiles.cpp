#include "shell/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace workbench {

namespace {

constexpr int keptFiles = 10;

QString settingsKey()
{
    return QStringLiteral("recentFiles");
}

} // namespace

RecentFiles::RecentFiles(QWidget* parent)
    : QMenu(tr("Open &Recent"), parent)
{
    setToolTipsVisible(true);
    set({});
}

const QStringList& RecentFiles::files() const
{
    return m_files;
}

void RecentFiles::add(const QString& file)
{
    QStringList files = m_files;
    files.removeAll(file);
    files.prepend(file);
    set(files.mid(0, keptFiles));
}

void RecentFiles::clearAll()
{
    set({});
}

void RecentFiles::saveState(QSettings& settings) const
{
    settings.setValue(settingsKey(), m_files);
}

void RecentFiles::restoreState(const QSettings& settings)
{
    set(settings.value(settingsKey()).toStringList().mid(0, keptFiles));
}

void RecentFiles::set(const QStringList& files)
{
    m_files = files;
    clear();
    int number = 0;
    for (const QString& file : files) {
        QString name = QFileInfo(file).fileName();
        name.replace(QLatin1Char('&'), QLatin1String("&&"));
        const QString key = ++number < 10 ? QStringLiteral("&%1  ").arg(number) : QString();
        QAction* const action = addAction(key + name);
        action->setToolTip(QDir::toNativeSeparators(file));
        connect(action, &QAction::triggered, this, [this, file] { Q_EMIT openRequested(file); });
    }
    addSeparator();
    connect(addAction(tr("&Forget All")), &QAction::triggered, this, &RecentFiles::clearAll);
    setEnabled(!files.isEmpty());
    Q_EMIT changed();
}

} // namespace workbench
