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

/// What to search for, and where.
struct SearchOrder
{
    QString text;
    QStringList folders;
    QStringList types; ///< extensions with their dots, compared without case; all files if empty
    bool isCaseSensitive = false;
};

/// A line of a file that contains the text.
struct SearchHit
{
    QString file; ///< its path, in native form
    FoundLine line;
};

/// How far a search is.
struct SearchProgress
{
    int searchedFiles = 0;
    int unreadable = 0; ///< files and folders
    QString folder; ///< where it is, in native form
    bool hasReachedLimit = false; ///< there were more hits than are reported
};

/// Searches the text files in folders and all below them, in the order of their names, on the worker
/// thread of a request manager.
///
/// A file is text if its first bytes have no NUL; nothing but regular files is read. Folders that are
/// links aren't followed, and one that lies in another isn't searched twice. What can't be read is
/// told and passed over. An abort is noticed within some hundred kilobytes, and ends it with
/// "cancelled".
class SearchRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    /// No more hits than this are reported.
    static constexpr int mostHits = 10'000;

    explicit SearchRequest(const SearchOrder& order);

Q_SIGNALS:
    /// More hits, a few times a second.
    void found(const QVector<workbench::SearchHit>& hits);
    /// More files or folders that can't be read.
    void unreadable(const QStringList& paths);
    /// A few times a second, and before the end.
    void progress(const workbench::SearchProgress& progress);

protected:
    void perform() override;

private:
    bool mayGoOn();
    void report();
    void searchFolder(const QString& folder, std::vector<QString>& foldersToCome);
    void searchFile(const QString& path);
    void pass(const QString& path);
    bool hasType(const QString& file) const;

    SearchOrder m_order;
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
