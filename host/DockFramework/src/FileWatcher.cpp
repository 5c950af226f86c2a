#include "FileWatcher.h"

#include <QFileInfo>
#include <QStringList>

#include <chrono>
#include <tuple>

FileWatcher::FileWatcher()
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(std::chrono::milliseconds(100));
    connect(&m_delay, &QTimer::timeout, this, &FileWatcher::report);
    const auto notice = [this] {
        // QFileSystemWatcher drops a file that is replaced, so add it again.
        watchAgain();
        if (!m_delay.isActive())
            m_delay.start();
    };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, notice);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, notice);
}

void FileWatcher::watch(const QString& filename)
{
    stop();
    if (filename.isEmpty())
        return;
    m_filename = QFileInfo(filename).absoluteFilePath();
    m_known = look();
    m_watcher.addPath(QFileInfo(m_filename).path());
    watchAgain();
}

void FileWatcher::stop()
{
    m_delay.stop();
    m_filename.clear();
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
}

bool FileWatcher::isWatching() const
{
    return !m_filename.isEmpty();
}

void FileWatcher::setIgnoring(bool ignore)
{
    if (ignore && !m_isIgnoring && m_delay.isActive()) {
        // Report changes from before the ignored time.
        m_delay.stop();
        report();
    }
    m_isIgnoring = ignore;
    if (!ignore && isWatching()) {
        m_delay.stop();
        watchAgain();
        m_known = look();
    }
}

FileWatcher::State FileWatcher::look() const
{
    const QFileInfo file(m_filename);
    return {file.exists(), file.size(), file.lastModified()};
}

void FileWatcher::watchAgain()
{
    if (m_watcher.files().isEmpty() && QFileInfo::exists(m_filename))
        m_watcher.addPath(m_filename);
}

void FileWatcher::report()
{
    if (m_isIgnoring || !isWatching())
        return;
    const State now = look();
    const auto values = [](const State& state) {
        return std::tie(state.exists, state.size, state.modified);
    };
    if (values(now) == values(m_known))
        return;
    m_known = now;
    Q_EMIT changed(now.exists);
}
