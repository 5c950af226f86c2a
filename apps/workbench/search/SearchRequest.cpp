#include "search/SearchRequest.h"

#include "common/path_names.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace workbench {

namespace {

constexpr std::chrono::milliseconds eventInterval{20};
constexpr std::chrono::milliseconds reportInterval{100};
constexpr qint64 bytesLookedAt = 8'192;

/// Returns the canonical path of a folder with a separator at its end, or an empty text if the
/// folder doesn't exist.
QString realFolder(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() || path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

QString fileName(const std::filesystem::path& path)
{
#if defined(Q_OS_WIN)
    return QString::fromStdWString(path.filename().native());
#else
    return QFile::decodeName(path.filename().c_str());
#endif
}

bool isLink(const std::filesystem::directory_entry& entry, std::error_code& error)
{
#if defined(Q_OS_WIN)
    // The standard library takes a junction for a folder, and a loop of them would have no end. Wine doesn't tell the
    // kind of a link.
    WIN32_FIND_DATAW found;
    HANDLE const search = FindFirstFileW(entry.path().c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        error = std::error_code(static_cast<int>(GetLastError()), std::system_category());
        return false;
    }
    FindClose(search);
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
        && (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK
            || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT || found.dwReserved0 == 0);
#else
    return entry.is_symlink(error);
#endif
}

/// Returns the folders without repetitions and without those that lie in another of them.
QStringList outermost(const QStringList& folders)
{
    QStringList realFolders;
    for (const QString& folder : folders)
        realFolders.append(realFolder(folder));
    QStringList result;
    for (int i = 0; i < folders.size(); ++i) {
        const auto isOutside = [&](const QString& other) {
            return !other.isEmpty() && other != realFolders[i] && realFolders[i].startsWith(other);
        };
        const bool isRepeated =
            !realFolders[i].isEmpty() && realFolders.indexOf(realFolders[i]) < i;
        if (!isRepeated && std::none_of(realFolders.begin(), realFolders.end(), isOutside))
            result.append(folders[i]);
    }
    return result;
}

} // namespace

SearchRequest::SearchRequest(const SearchQuery& query)
    : m_query(query)
    , m_search(query.text, query.isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive)
{
    qRegisterMetaType<QVector<SearchHit>>();
    qRegisterMetaType<SearchProgress>();
}

void SearchRequest::perform()
{
    m_sinceEvents.start();
    m_sinceReport.start();
    const QStringList folders = outermost(m_query.folders);
    // The last element is the folder to search next.
    std::vector<QString> foldersToCome(folders.crbegin(), folders.crend());
    while (!foldersToCome.empty() && !isStopped()) {
        const QString folder = std::move(foldersToCome.back());
        foldersToCome.pop_back();
        searchFolder(folder, foldersToCome);
        handleEvents();
    }
    report();
    if (abort_requested())
        Q_EMIT failed("cancelled");
    else
        Q_EMIT completed();
}

bool SearchRequest::isStopped() const
{
    return abort_requested() || m_progress.hasReachedLimit;
}

void SearchRequest::handleEvents()
{
    if (std::chrono::milliseconds(m_sinceReport.elapsed()) >= reportInterval)
        report();
    if (std::chrono::milliseconds(m_sinceEvents.elapsed()) >= eventInterval) {
        QCoreApplication::processEvents();
        m_sinceEvents.start();
    }
}

void SearchRequest::report()
{
    if (!m_hits.isEmpty())
        Q_EMIT found(std::exchange(m_hits, {}));
    if (!m_unreadable.isEmpty())
        Q_EMIT unreadable(std::exchange(m_unreadable, {}));
    Q_EMIT progress(m_progress);
    m_sinceReport.start();
}

/// Adds the files to search and the subfolders of a folder. Returns false if not all could be listed.
bool SearchRequest::listFolder(const QString& folder, QStringList& files, QStringList& folders)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(filePath(folder).toStdFilePath(), error);
    const std::filesystem::directory_iterator end;
    bool isWhole = !error;
    for (; !error && entry != end && !isStopped(); entry.increment(error)) {
        const QString path = QDir(folder).filePath(fileName(entry->path()));
        std::error_code unknown;
        // A link may lead to a pipe, and opening that would block for ever.
        if (entry->is_regular_file(unknown)) {
            if (hasType(path))
                files.append(path);
        } else if (entry->is_directory(unknown) && !isLink(*entry, unknown)) {
            folders.append(path);
        }
        isWhole = isWhole && (!unknown || unknown == std::errc::no_such_file_or_directory);
        handleEvents();
    }
    return isWhole && !error;
}

/// Searches the files in a folder, and appends its subfolders to \p foldersToCome, so that they are
/// searched next.
void SearchRequest::searchFolder(const QString& folder, std::vector<QString>& foldersToCome)
{
    m_progress.folder = QDir::toNativeSeparators(folder);
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        addUnreadable(folder);
        return;
    }
    QStringList files;
    QStringList folders;
    if (!listFolder(folder, files, folders))
        addUnreadable(folder);
    std::sort(files.begin(), files.end());
    std::sort(folders.begin(), folders.end());
    for (auto file = files.cbegin(); file != files.cend() && !isStopped(); ++file) {
        searchFile(*file);
        handleEvents();
    }
    foldersToCome.insert(foldersToCome.end(), folders.crbegin(), folders.crend());
}

void SearchRequest::searchFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        addUnreadable(path);
        return;
    }
    ++m_progress.searchedFiles;
    if (!looksLikeText(file.peek(bytesLookedAt)))
        return;
    m_search.run(
        file,
        [this, native = QDir::toNativeSeparators(path)](const FoundLine& line) {
            if (m_hitCount < maxHits) {
                m_hits.append({native, line});
                ++m_hitCount;
            } else {
                m_progress.hasReachedLimit = true;
            }
        },
        [this] {
            handleEvents();
            return !isStopped();
        });
    if (file.error() != QFileDevice::NoError)
        addUnreadable(path);
}

void SearchRequest::addUnreadable(const QString& path)
{
    ++m_progress.unreadable;
    m_unreadable.append(QDir::toNativeSeparators(path));
}

bool SearchRequest::hasType(const QString& file) const
{
    return m_query.types.isEmpty()
        || std::any_of(m_query.types.begin(), m_query.types.end(), [&file](const QString& type) {
               return file.endsWith(type, Qt::CaseInsensitive);
           });
}

} // namespace workbench
