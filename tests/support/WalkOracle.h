#pragma once

#include "support/FileTree.h"

#include <QDir>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <filesystem>
#include <vector>

/// What a scan has to list, worked out from separate readings of each directory.
namespace zvtest {

struct WalkedEntry
{
    QString path;
    bool isFile;
    int depth;
};

inline QString textOf(const std::filesystem::path& path)
{
    // Behind a character, since the conversion loses a byte order mark at the beginning.
    return QString::fromUtf8(("x" + path.u8string()).c_str()).mid(1);
}

/// All that lies below a directory, in the order of the file system, each directory before what is
/// in it.
inline void appendEntries(std::vector<WalkedEntry>& entries, const std::filesystem::path& directory,
                          const QString& prefix, int depth)
{
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        const QString path = prefix + QDir::separator() + textOf(entry.path().filename());
        entries.push_back({path, entry.is_regular_file(), depth});
        if (entry.is_directory() && !entry.is_symlink())
            appendEntries(entries, entry.path(), path, depth + 1);
    }
}

inline QString cutBack(QString path, int names)
{
    for (int i = 0; i < names; ++i)
        path.truncate(path.lastIndexOf(QDir::separator()));
    return path;
}

inline QString nameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

inline bool hasType(const QString& path, const QStringList& types)
{
    const QString name = nameOf(path);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return types.isEmpty() || (dot > 0 && types.contains(name.mid(dot), Qt::CaseInsensitive));
}

/// The rows for directories in the order of their list. A directory that is missing is passed over;
/// one that is empty ends the walk.
inline QStringList expectedRows(const QStringList& directories, const QStringList& types = {},
                                const QString& filter = {})
{
    QStringList rows;
    for (const QString& directory : directories) {
        if (!QFileInfo(directory).isDir())
            continue;
        std::vector<WalkedEntry> entries;
        appendEntries(entries, stdPath(directory), QDir::toNativeSeparators(directory), 0);
        if (entries.empty())
            break;
        // Looked at are all but the first, and then what is left of the last.
        WalkedEntry last = entries.back();
        last.path = cutBack(last.path, last.depth);
        entries.erase(entries.begin());
        entries.push_back(last);
        for (const WalkedEntry& entry : entries) {
            if (entry.isFile && hasType(entry.path, types)
                && nameOf(entry.path).contains(filter, Qt::CaseInsensitive))
                rows.append(entry.path);
        }
    }
    return rows;
}

} // namespace zvtest
