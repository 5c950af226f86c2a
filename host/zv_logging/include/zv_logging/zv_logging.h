#pragma once

#include <zv_logging/zv_logging_export.h>

/// Starts a sink. One that runs already is left as it is. Throws `std::invalid_argument` for
/// another number than the three. A log file that can't be opened is reported on standard error.
/// Any thread.
/// @param sink 0 writes to the console (standard error), 1 to a rotating file, 2 to memory for a
/// log view
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void add_sink(int sink);

/// Makes a sink keep the lines of a level and above, also one that is added later. Throws
/// `std::invalid_argument` for other numbers than those below. Any thread.
/// @param sink its number, as for `add_sink`
/// @param level 0 (trace), 1 (progress of background work), 2 (information, where a sink starts), 3
/// (warning), 4 (error), 5 (critical)
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void set_log_level(int sink, int level);

namespace zvutil::logging {

/// Passes a line to all running sinks whose level admits it. The texts are NUL-ended UTF-8. Any
/// thread.
/// @param level one outside 0 to 5 counts as the nearest one
/// @param category the part of the program that reports
/// @param text the line
/// @since 0.1 @ingroup host
ZV_LOGGING_EXPORT void write(int level, const char* category, const char* text);

} // namespace zvutil::logging
