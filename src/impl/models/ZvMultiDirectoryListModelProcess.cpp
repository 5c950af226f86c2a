#include "impl/models/ZvMultiDirectoryListModelProcess.h"

#include <zvutil/ZvFilePath.h>

#include "impl/paths/path_rules.h"

#include <zvutil/details/log_level.h>

#include <zv_logging/zv_logging.h>

#include <QMetaObject>
#include <QStringBuilder>
#include <QStringView>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <locale>
#include <system_error>
#include <utility>

namespace path_rules = zvutil::impl::path_rules;

namespace {

void log(int level, const std::string& text)
{
    zvutil::logging::write(level, "FileView", text.c_str());
}

std::wstring utf16Text(const QString& text)
{
    const std::u16string units = text.toStdU16String();
    return {units.begin(), units.end()};
}

/// Adds a separator at the end, and turns each `/` into `\`.
std::wstring canonicalForm(std::wstring directory)
{
    path_rules::append(directory, {});
    std::replace(directory.begin(), directory.end(), L'/', L'\\');
    return directory;
}

std::wstring canonicalForm(zvutil::ZvFilePath directory)
{
    directory /= zvutil::ZvFilePath();
    return directory.makePreferred().c_str();
}

/// Converts directly, not by a text in the form of Windows, since `\` may be part of a name
/// elsewhere.
std::filesystem::path filePath(const std::u16string& text)
{
    return std::filesystem::u8path(QStringView(text).toUtf8().toStdString());
}

} // namespace

ZvMultiDirectoryListModelProcess::ZvMultiDirectoryListModelProcess(long long batchSize)
    : m_batchSize(batchSize)
    , m_upperCase(std::locale())
{
}

template <typename Work>
void ZvMultiDirectoryListModelProcess::onOwnThread(Work work)
{
    QMetaObject::invokeMethod(this, std::move(work));
}

bool ZvMultiDirectoryListModelProcess::isStopRequested() const
{
    return m_stopRequested.load(std::memory_order_relaxed)
        || m_endRequested.load(std::memory_order_relaxed);
}

void ZvMultiDirectoryListModelProcess::requestStop()
{
    m_stopRequested.store(true, std::memory_order_relaxed);
}

void ZvMultiDirectoryListModelProcess::requestEnd()
{
    m_endRequested.store(true, std::memory_order_relaxed);
}

void ZvMultiDirectoryListModelProcess::addDirectory(std::wstring directory)
{
    requestStop();
    onOwnThread([this, added = canonicalForm(std::move(directory))] {
        m_directories.push_back(added);
        requestStop();
        restartScan();
    });
}

void ZvMultiDirectoryListModelProcess::removeDirectory(std::wstring directory)
{
    requestStop();
    onOwnThread([this, removed = canonicalForm(std::move(directory))] {
        const auto isRemoved = [&removed](const std::wstring& listed) {
            return path_rules::compare(listed, removed) == 0;
        };
        m_directories.erase(std::remove_if(m_directories.begin(), m_directories.end(), isRemoved),
                            m_directories.end());
        requestStop();
        restartScan();
    });
}

void ZvMultiDirectoryListModelProcess::setDirectories(const QList<zvutil::ZvFilePath>& directories)
{
    requestStop();
    onOwnThread([this, directories] {
        m_directories.clear();
        for (const zvutil::ZvFilePath& directory : directories)
            m_directories.push_back(canonicalForm(directory));
        requestStop();
        restartScan();
    });
}

void ZvMultiDirectoryListModelProcess::reloadPaths()
{
    requestStop();
    onOwnThread([this] { restartScan(); });
}

void ZvMultiDirectoryListModelProcess::setAllowedFileTypes(const QStringList& types)
{
    requestStop();
    onOwnThread([this, types] {
        m_allowedTypes.resize(static_cast<std::size_t>(types.size()));
        for (int i = 0; i < types.size(); ++i)
            m_upperCase.assign<wchar_t>(m_allowedTypes[static_cast<std::size_t>(i)],
                                        utf16Text(types[i]));
        // By contract: new types don't affect the files already found or already skipped. Types act
        // on what is yet to be walked, until reloadPaths().
        startScan();
    });
}

void ZvMultiDirectoryListModelProcess::setFilterFixedString(const QString& text)
{
    requestStop();
    onOwnThread([this, text] {
        m_upperCase.assign<char16_t>(m_filterText, text.toStdU16String());
        startScan();
    });
}

void ZvMultiDirectoryListModelProcess::restartScan()
{
    m_foundFiles.clear();
    m_directoryCursor = 0;
    m_entries = openNextDirectory();
    startScan();
}

std::shared_ptr<zvutil::impl::directory_walk> ZvMultiDirectoryListModelProcess::openNextDirectory()
{
    while (m_directoryCursor < m_directories.size()) {
        std::error_code error;
        auto walk = std::make_shared<Walk>(m_directories[m_directoryCursor++], error);
        if (!error)
            return walk;
    }
    return nullptr;
}

std::shared_ptr<zvutil::impl::directory_walk> ZvMultiDirectoryListModelProcess::nextEntry()
{
    std::shared_ptr<Walk> shown = m_entries;
    std::error_code error;
    m_entries->increment(error);
    if (error) {
        m_entries.reset();
        throw std::filesystem::filesystem_error("recursive_directory_iterator::operator++", error);
    }
    // By contract: an empty next directory ends the walk, although others may follow. The walk then
    // stands on nothing, which means its end.
    if (m_entries->at_end())
        m_entries = openNextDirectory();
    // By contract: `shown` is the walk itself, not a copy, so it shows the entry after the
    // increment. The scan therefore never looks at the first entry of a directory and looks twice
    // at the last.
    return shown;
}

bool ZvMultiDirectoryListModelProcess::isWalkOver() const
{
    return !m_entries || m_entries->at_end();
}

void ZvMultiDirectoryListModelProcess::startScan()
{
    log(zvutil::details::log_progress,
        std::string("Start invoked, already running: ") + (m_isRunning ? "true" : "false"));
    if (m_isRunning)
        return;
    m_isRunning = true;
    m_stopRequested.store(false, std::memory_order_relaxed);
    log(zvutil::details::log_progress, "starting");
    Q_EMIT started();
    try {
        walk();
        sendMatches();
    } catch (const std::exception& error) {
        log(zvutil::details::log_error, error.what());
    }
    m_isRunning = false;
    log(zvutil::details::log_progress, "stopping");
    Q_EMIT stopped();
    log(zvutil::details::log_progress, "stopped");
}

void ZvMultiDirectoryListModelProcess::walk()
{
    while (!isWalkOver() && !isStopRequested()) {
        try {
            collectNext();
        } catch (const std::exception& error) {
            log(zvutil::details::log_progress, std::string("File scan error: ") + error.what());
        }
    }
}

void ZvMultiDirectoryListModelProcess::collectNext()
{
    const std::shared_ptr<Walk> shown = nextEntry();
    std::error_code error;
    const bool isFile = shown->is_file(error);
    if (error)
        throw std::filesystem::filesystem_error("directory_entry::status", filePath(shown->path()),
                                                error);
    if (!isFile)
        return;
    m_name.clear();
    shown->append_name(m_name);
    if (matchesAllowedType(m_name))
        m_foundFiles.add(shown->folder(), m_name);
}

void ZvMultiDirectoryListModelProcess::sendMatches()
{
    QVariantList batch;
    m_foundFiles.visit([this, &batch](const QString& folder, std::u16string_view name) {
        if (isStopRequested())
            return false;
        if (matchesFilter(name)) {
            const QStringView tail(name.data(), static_cast<qsizetype>(name.size()));
            // Construct the value in place: it is then neither copied nor reference-counted.
            batch.append(QVariant());
            batch.last() = QVariant(QString(folder % tail));
            if (batch.size() == m_batchSize)
                sendBatch(batch);
        }
        return true;
    });
    log(zvutil::details::log_progress, "b");
    if (!batch.isEmpty() && !isStopRequested())
        sendBatch(batch);
}

void ZvMultiDirectoryListModelProcess::sendBatch(QVariantList& batch)
{
    Q_EMIT nextBatch(batch);
    batch.clear();
}

bool ZvMultiDirectoryListModelProcess::matchesAllowedType(std::u16string_view name)
{
    if (m_allowedTypes.empty())
        return true;
    // Prefix a directory, so that the name can't be read as a drive.
    m_path.assign(L"x\\").append(name.begin(), name.end());
    m_upperCase.assign(m_type, path_rules::extension(m_path));
    return std::find(m_allowedTypes.begin(), m_allowedTypes.end(), m_type) != m_allowedTypes.end();
}

/// Where `\` is no separator of the platform, a name may contain one; only the part after the last
/// one is compared.
bool ZvMultiDirectoryListModelProcess::matchesFilter(std::u16string_view name)
{
    if (m_filterText.empty())
        return true;
    m_upperCase.assign(m_name, name);
    // Test the last match only: if it lies before the last separator, all do.
    const std::size_t match = m_name.rfind(m_filterText);
    return match != std::u16string::npos && m_name.find(u'\\', match) == std::u16string::npos;
}
