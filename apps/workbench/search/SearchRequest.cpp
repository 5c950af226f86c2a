#include "search/SearchRequest.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr qint64 millisecondsBetweenEvents = 20;
constexpr qint64 millisecondsBetweenReports = 100;
constexpr qint64 bytesLookedAt = 8'192;

/// Where a folder really is, with a separator at its end; nothing if it is nowhere.
QString place(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() || path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
}

/// The folders without those that are or lie in another of them.
QStringList outermost(const QStringList& folders)
{
    QStringList places;
    for (const QString& folder : folders)
        places.append(place(folder));
    QStringList result;
    for (int i = 0; i < folders.size(); ++i) {
        const auto isOutside = [&](const QString& other) {
            return !other.isEmpty() && other != places[i] && places[i].startsWith(other);
        };
        const bool isRepeated = !places[i].isEmpty() && places.indexOf(places[i]) < i;
        if (!isRepeated && std::none_of(places.begin(), places.end(), isOutside))
            result.append(folders[i]);
    }
    return result;
}

} // namespace

SearchRequest::SearchRequest(const SearchOrder& order)
    : m_order(order)
    , m_search(order.text, order.isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive)
{
    qRegisterMetaType<QVector<SearchHit>>();
    qRegisterMetaType<SearchProgress>();
}

void SearchRequest::perform()
{
    m_sinceEvents.start();
    m_sinceReport.start();
    const QStringList folders = outermost(m_order.folders);
    // The next one is the last.
    std::vector<QString> foldersToCome(folders.crbegin(), folders.crend());
    while (!foldersToCome.empty() && mayGoOn()) {
        const QString folder = std::move(foldersToCome.back());
        foldersToCome.pop_back();
        searchFolder(folder, foldersToCome);
    }
    report();
    if (abort_requested())
        Q_EMIT failed("cancelled");
    else
        Q_EMIT completed();
}

/// Reports now and then, and handles events, since an abort is one.
bool SearchRequest::mayGoOn()
{
    if (m_sinceReport.elapsed() >= millisecondsBetweenReports)
        report();
    if (m_sinceEvents.elapsed() >= millisecondsBetweenEvents) {
        QCoreApplication::processEvents();
        m_sinceEvents.start();
    }
    return !abort_requested() && !m_progress.hasReachedLimit;
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

/// The folders in it are to come first of all.
void SearchRequest::searchFolder(const QString& folder, std::vector<QString>& foldersToCome)
{
    m_progress.folder = QDir::toNativeSeparators(folder);
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        pass(folder);
        return;
    }
    QStringList files;
    QStringList folders;
    QDirIterator entries(folder, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    while (entries.hasNext() && mayGoOn()) {
        const QString path = entries.next();
        const QFileInfo entry = entries.fileInfo();
        // Opening a pipe, which a link may lead to, would wait for ever.
        if (entry.isFile() && hasType(path))
            files.append(path);
        else if (entry.isDir() && !entry.isSymLink())
            folders.append(path);
    }
    std::sort(files.begin(), files.end());
    std::sort(folders.begin(), folders.end());
    for (auto file = files.cbegin(); file != files.cend() && mayGoOn(); ++file)
        searchFile(*file);
    foldersToCome.insert(foldersToCome.end(), folders.crbegin(), folders.crend());
}

void SearchRequest::searchFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        pass(path);
        return;
    }
    ++m_progress.searchedFiles;
    if (!looksLikeText(file.peek(bytesLookedAt)))
        return;
    m_search.run(
        file,
        [this, native = QDir::toNativeSeparators(path)](const FoundLine& line) {
            if (m_hitCount < mostHits) {
                m_hits.append({native, line});
                ++m_hitCount;
            } else {
                m_progress.hasReachedLimit = true;
            }
        },
        [this] { return mayGoOn(); });
    if (file.error() != QFileDevice::NoError)
        pass(path);
}

void SearchRequest::pass(const QString& path)
{
    ++m_progress.unreadable;
    m_unreadable.append(QDir::toNativeSeparators(path));
}

bool SearchRequest::hasType(const QString& file) const
{
    return m_order.types.isEmpty()
        || std::any_of(m_order.types.begin(), m_order.types.end(), [&file](const QString& type) {
               return file.endsWith(type, Qt::CaseInsensitive);
           });
}

} // namespace workbench
