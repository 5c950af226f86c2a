#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <filesystem>
#include <system_error>

namespace zvtest {

/// The path of the file system for a text.
inline std::filesystem::path stdPath(const QString& path)
{
    return std::filesystem::u8path(path.toUtf8().toStdString());
}

/// Where very many files are quickly made: in memory, if the system has such a place.
inline QString quickPlace()
{
    const QFileInfo memory("/dev/shm");
    return memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
}

/// A directory of its own for a test, in which files are made by their relative paths.
class FileTree
{
public:
    explicit FileTree(const QStringList& files = {}, const QString& place = quickPlace())
        : m_dir(place + "/zvtest-XXXXXX")
    {
        m_dir.setAutoRemove(false);
        for (const QString& name : files)
            file(name);
    }

    ~FileTree()
    {
        // Unlike Qt's it also removes names that are no text.
        std::error_code ignored;
        std::filesystem::remove_all(stdPath(path()), ignored);
    }

    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;

    QString path() const { return m_dir.path(); }
    QString path(const QString& name) const { return m_dir.filePath(name); }

    /// Makes an empty file and the directories that it is in; a directory if \p name ends in a
    /// slash.
    void file(const QString& name) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        if (!name.endsWith(QLatin1Char('/')) && !QFile(path(name)).open(QIODevice::WriteOnly))
            qFatal("there is no room for the files");
    }

    void files(int count, const QString& pattern = "%1.txt") const
    {
        for (int i = 0; i < count; ++i)
            file(pattern.arg(i));
    }

    /// The content of a link is taken as it is.
    void link(const QString& name, const QString& target) const
    {
        std::filesystem::create_symlink(stdPath(target), stdPath(path(name)));
    }

    void remove(const QString& name) const { std::filesystem::remove_all(stdPath(path(name))); }

private:
    QTemporaryDir m_dir;
};

} // namespace zvtest
