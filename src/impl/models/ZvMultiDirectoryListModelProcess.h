#pragma once

#include "impl/models/directory_walk.h"
#include "impl/models/found_files.h"
#include "impl/text/upper_case.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zvutil {
class ZvFilePath;
}

/// The scan of a `ZvMultiDirectoryListModel`. The object lives on the scan thread; the model's
/// thread calls the public operations, and the event loop carries all except the first two over.
///
/// A run has two passes. The first walks the directories and collects the files of an allowed type.
/// The second sends those that match the filter, in batches. The walk and its files outlive a run:
/// the next run continues one that was stopped, and a new filter doesn't read the disk again.
class ZvMultiDirectoryListModelProcess : public QObject
{
    Q_OBJECT

public:
    explicit ZvMultiDirectoryListModelProcess(long long batchSize);

    /// Ends the run that is under way.
    void requestStop();
    /// Ends every run from now on at once, also one that hasn't begun.
    void requestEnd();

    /// \p directory is a text in the form of Windows, here and below.
    void addDirectory(std::wstring directory);
    void removeDirectory(std::wstring directory);
    void setDirectories(const QList<zvutil::ZvFilePath>& directories);
    void reloadPaths();
    void setAllowedFileTypes(const QStringList& types);
    void setFilterFixedString(const QString& text);

    /// Runs both passes; called on the thread of this object.
    void startScan();

Q_SIGNALS:
    void nextBatch(QVariantList batch);
    void started();
    void stopped();

private:
    using Walk = zvutil::impl::directory_walk;

    template <typename Work>
    void onOwnThread(Work work);

    void restartScan();
    std::shared_ptr<Walk> openNextDirectory();
    std::shared_ptr<Walk> nextEntry();
    bool isWalkOver() const;
    bool isStopRequested() const;

    void walk();
    void collectNext();
    void sendMatches();
    void sendBatch(QVariantList& batch);

    bool matchesAllowedType(std::u16string_view name);
    bool matchesFilter(std::u16string_view name);

    zvutil::impl::found_files m_foundFiles;
    std::deque<std::wstring> m_directories;
    std::vector<std::wstring> m_allowedTypes;
    /// The walk; null or at its end when it is over.
    std::shared_ptr<Walk> m_entries;
    std::size_t m_directoryCursor = 0;
    std::u16string m_filterText;
    long long m_batchSize;
    zvutil::impl::upper_case m_upperCase;
    bool m_isRunning = false;
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_endRequested{false};

    // Buffers that are used again for each name.
    std::u16string m_name;
    std::wstring m_path;
    std::wstring m_type;
};
