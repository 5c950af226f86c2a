#include "shell/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace workbench {

namespace {

constexpr int maxFiles = 10;

QString settingsKey()
{
    return QStringLiteral("recentFiles");
}

QStringList withOnTop(QStringList files, const QString& file)
{
    files.removeAll(file);
    files.prepend(file);
    return files.mid(0, maxFiles);
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
    m_added.removeAll(file);
    m_added.append(file);
    set(withOnTop(m_files, file));
}

void RecentFiles::clearAll()
{
    m_added.clear();
    m_isCleared = true;
    set({});
}

void RecentFiles::saveState(QSettings& settings) const
{
    QStringList files = m_isCleared ? QStringList() : settings.value(settingsKey()).toStringList();
    for (const QString& file : m_added)
        files = withOnTop(files, file);
    settings.setValue(settingsKey(), files);
}

void RecentFiles::markSaved(const QSettings& settings)
{
    m_added.clear();
    m_isCleared = false;
    const QStringList files = settings.value(settingsKey()).toStringList();
    if (files != m_files)
        set(files);
}

void RecentFiles::restoreState(const QSettings& settings)
{
    set(settings.value(settingsKey()).toStringList().mid(0, maxFiles));
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
