#pragma once

#include <zv_logging/zv_logging_export.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The host's side of the log: what has been logged, and where it goes. Any thread.
namespace zvutil::logging::host {

struct Record
{
    int level;
    std::string category;
    std::string text;
};

/// The last lines that the memory sink has kept, oldest first; empty if it doesn't run.
ZV_LOGGING_EXPORT std::vector<Record> records();

/// What the memory sink has taken since somebody has looked before.
struct NewRecords
{
    std::uint64_t count; ///< of all that it has ever taken, for the next look
    std::vector<Record> records; ///< oldest first; those that it hasn't kept are missing
};

/// Those behind the first \p seen. With the count of the look before, that costs what is new, and next
/// to nothing if there isn't anything.
ZV_LOGGING_EXPORT NewRecords recordsSince(std::uint64_t seen);

/// The running sinks, in the order in which they were added.
ZV_LOGGING_EXPORT std::vector<int> sinks();

/// Where sink 1 writes when it is added next. By default a file in the user's data directory.
ZV_LOGGING_EXPORT void setLogFile(const std::string& path);
ZV_LOGGING_EXPORT std::string logFile();

/// Ends all sinks and forgets their levels and records.
ZV_LOGGING_EXPORT void reset();

/// Called before each call of the log takes effect, with "add_sink SINK", "set_log_level SINK
/// LEVEL" or "write LEVEL CATEGORY: TEXT", one call at a time. It must not call the log.
using Observer = std::function<void(const std::string& call)>;

/// Sets the one observer; an empty one switches it off.
ZV_LOGGING_EXPORT void setObserver(Observer observer);

} // namespace zvutil::logging::host
