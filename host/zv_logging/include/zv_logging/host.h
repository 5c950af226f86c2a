#pragma once

#include <zv_logging/zv_logging_export.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The host's side of the log: its lines and its sinks. Any thread.
namespace zvutil::logging::host {

/// A line of the log.
/// @since 0.1 @ingroup host
struct Record
{
    int level; ///< from 0 to 5, see `set_log_level`
    std::string category; ///< in UTF-8
    std::string text; ///< in UTF-8
};

/// @return the last lines that the memory sink has kept, oldest first; empty if it doesn't run.
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT std::vector<Record> records();

/// The lines that the memory sink has received since an earlier look.
/// @since 0.1 @ingroup host
struct NewRecords
{
    std::uint64_t count; ///< number of all lines ever received, for the next look
    std::vector<Record> records; ///< oldest first; without lines that were dropped meanwhile
};

/// @return the lines after the first \p seen ones. With the count of the previous call the cost is
/// that of the new lines.
/// @param seen the number of lines to leave out; 0 for none
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT NewRecords recordsSince(std::uint64_t seen);

/// @return the running sinks, in the order in which they were added.
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT std::vector<int> sinks();

/// Sets the file that sink 1 writes to when it is added next. By default a file in the user's data
/// directory.
/// @param path the file need not exist; an empty one stands for the default
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void setLogFile(const std::string& path);
/// @return the path of that file.
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT std::string logFile();

/// Ends all sinks and drops their levels and records.
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void reset();

/// Called before each call of the log takes effect, with "add_sink SINK", "set_log_level SINK
/// LEVEL" or "write LEVEL CATEGORY: TEXT", one call at a time. The observer must not call the log.
/// @since 0.1 @ingroup host
using Observer = std::function<void(const std::string& call)>;

/// Sets the one observer.
/// @param observer an empty one switches it off
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void setObserver(Observer observer);

} // namespace zvutil::logging::host
