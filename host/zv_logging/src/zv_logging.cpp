#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include <QStandardPaths>
#include <QString>

#include <spdlog/details/log_msg.h>
#include <spdlog/sinks/ringbuffer_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <mutex>
#include <stdexcept>

namespace {

constexpr int sinkCount = 3;
constexpr int memorySink = 2;
constexpr int highestLevel = spdlog::level::critical;
constexpr std::size_t maximalFileSize = 4 * 1024 * 1024;
constexpr std::size_t rotatedFiles = 3;
constexpr std::size_t maxRecords = 10'000;

using RecordSink = spdlog::sinks::ringbuffer_sink_st;

/// The state of the log. One mutex guards all members, the sinks included.
struct Log
{
    std::mutex mutex;
    std::array<spdlog::sink_ptr, sinkCount> sinks;
    std::array<spdlog::level::level_enum, sinkCount> levels = {
        spdlog::level::info, spdlog::level::info, spdlog::level::info};
    std::vector<int> order;
    std::uint64_t recordCount = 0;
    std::string file;
    zvutil::logging::host::Observer observer;

    void observe(const std::string& call) const
    {
        if (observer)
            observer(call);
    }
};

Log& theLog()
{
    static Log log;
    return log;
}

std::string defaultLogFile()
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return (directory + QStringLiteral("/zvhost/log/zvhost.log")).toStdString();
}

spdlog::sink_ptr makeSink(int sink, const std::string& file)
{
    switch (sink) {
    case 0:
        return std::make_shared<spdlog::sinks::stderr_color_sink_st>();
    case 1:
        return std::make_shared<spdlog::sinks::rotating_file_sink_st>(file, maximalFileSize,
                                                                      rotatedFiles);
    default:
        return std::make_shared<RecordSink>(maxRecords);
    }
}

std::size_t checkedSink(int sink)
{
    if (sink < 0 || sink >= sinkCount)
        throw std::invalid_argument("No such log sink: " + std::to_string(sink));
    return static_cast<std::size_t>(sink);
}

} // namespace

void add_sink(int sink)
{
    const std::size_t index = checkedSink(sink);
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    log.observe("add_sink " + std::to_string(sink));
    if (log.sinks[index])
        return;
    try {
        log.sinks[index] = makeSink(sink, log.file.empty() ? defaultLogFile() : log.file);
    } catch (const spdlog::spdlog_ex& error) {
        std::fprintf(stderr, "zv_logging: %s\n", error.what());
        return;
    }
    log.sinks[index]->set_level(log.levels[index]);
    log.order.push_back(sink);
}

void set_log_level(int sink, int level)
{
    const std::size_t index = checkedSink(sink);
    if (level < 0 || level > highestLevel)
        throw std::invalid_argument("No such log level: " + std::to_string(level));
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    log.observe("set_log_level " + std::to_string(sink) + ' ' + std::to_string(level));
    log.levels[index] = static_cast<spdlog::level::level_enum>(level);
    if (log.sinks[index])
        log.sinks[index]->set_level(log.levels[index]);
}

namespace zvutil::logging {

void write(int level, const char* category, const char* text)
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    log.observe("write " + std::to_string(level) + ' ' + category + ": " + text);
    const auto severity =
        static_cast<spdlog::level::level_enum>(std::clamp(level, 0, highestLevel));
    const spdlog::details::log_msg message(category, severity, text);
    for (const int sink : log.order) {
        const spdlog::sink_ptr& target = log.sinks[static_cast<std::size_t>(sink)];
        if (!target->should_log(severity))
            continue;
        target->log(message);
        target->flush();
        if (sink == memorySink)
            ++log.recordCount;
    }
}

namespace host {

std::vector<Record> records()
{
    return recordsSince(0).records;
}

NewRecords recordsSince(std::uint64_t seen)
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    NewRecords result = {log.recordCount, {}};
    auto* const memory = static_cast<RecordSink*>(log.sinks[memorySink].get());
    if (!memory || seen >= log.recordCount)
        return result;
    const std::uint64_t fresh = std::min<std::uint64_t>(log.recordCount - seen, maxRecords);
    for (const auto& message : memory->last_raw(fresh))
        result.records.push_back({message.level,
                                  {message.logger_name.data(), message.logger_name.size()},
                                  {message.payload.data(), message.payload.size()}});
    return result;
}

std::vector<int> sinks()
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    return log.order;
}

void setLogFile(const std::string& path)
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    log.file = path;
}

std::string logFile()
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    return log.file.empty() ? defaultLogFile() : log.file;
}

void reset()
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    for (spdlog::sink_ptr& sink : log.sinks)
        sink.reset();
    log.levels.fill(spdlog::level::info);
    log.order.clear();
}

void setObserver(Observer observer)
{
    Log& log = theLog();
    const std::lock_guard lock(log.mutex);
    log.observer = std::move(observer);
}

} // namespace host

} // namespace zvutil::logging
