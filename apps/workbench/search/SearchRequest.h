#pragma once

#include "search/TextSearch.h"

#include <zvutil/libzvutil/abstract_request.h>

#include <QElapsedTimer>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

namespace workbench {

/// The text to search for, and where.
struct SearchQuery
{
    QString text;
    QStringList folders;
    QStringList types; ///< extensions with their dots, compared without case; empty for all files
    bool isCaseSensitive = false;
};

/// A line of a file that contains the text.
struct SearchHit
{
    QString file; ///< path in native form
    FoundLine line;
};

/// The progress of a search.
struct SearchProgress
{
    int searchedFiles = 0;
    int unreadable = 0; ///< number of files and folders that can't be read
    QString folder; ///< the folder that is being searched, in native form
    bool hasReachedLimit = false; ///< there are more hits than are reported
};

/// Searches the text files in folders and everything below them, in the order of their names, on
/// the worker thread of a request manager.
///
/// A file is text if its first bytes contain no NUL; only regular files are read. Links to folders
/// aren't followed, and a folder that lies in another one isn't searched twice. Files and folders
/// that can't be read are reported and skipped. An abort takes effect within some hundred
/// kilobytes, and the request then fails with "cancelled".
class SearchRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    /// The largest number of hits that are reported.
    static constexpr int maxHits = 10'000;

    explicit SearchRequest(const SearchQuery& query);

Q_SIGNALS:
    /// Emitted with more hits, a few times a second.
    void found(const QVector<workbench::SearchHit>& hits);
    /// Emitted with more files or folders that can't be read.
    void unreadable(const QStringList& paths);
    /// Emitted a few times a second, and before the end.
    void progress(const workbench::SearchProgress& progress);

protected:
    void perform() override;

private:
    bool isStopped() const;
    /// Reports progress, and handles events, since an abort arrives as one. Does either only if
    /// some time has passed since the last time.
    void handleEvents();
    void report();
    void searchFolder(const QString& folder, std::vector<QString>& foldersToCome);
    bool listFolder(const QString& folder, QStringList& files, QStringList& folders);
    void searchFile(const QString& path);
    void addUnreadable(const QString& path);
    bool hasType(const QString& file) const;

    SearchQuery m_query;
    TextSearch m_search;
    QVector<SearchHit> m_hits;
    QStringList m_unreadable;
    SearchProgress m_progress;
    QElapsedTimer m_sinceEvents;
    QElapsedTimer m_sinceReport;
    int m_hitCount = 0;
};

} // namespace workbench

Q_DECLARE_METATYPE(workbench::SearchHit)
Q_DECLARE_METATYPE(workbench::SearchProgress)
