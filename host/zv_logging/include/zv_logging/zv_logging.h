#pragma once

#include <zv_logging/zv_logging_export.h>

/// Starts a sink: 0 writes to the console (standard error), 1 to a rotating file, 2 to memory for a
/// log view. A sink that runs already is left as it is. Throws `std::invalid_argument` for another
/// number. A log file that can't be opened is reported on standard error. Any thread.
ZV_LOGGING_EXPORT void add_sink(int sink);

/// Makes a sink keep the lines of \p level and above. Levels are 0 (trace), 1 (progress of
/// background work), 2 (information, where a sink starts), 3 (warning), 4 (error), 5 (critical).
/// The level also applies to a sink that is added later. Throws `std::invalid_argument` for other
/// numbers. Any thread.
ZV_LOGGING_EXPORT void set_log_level(int sink, int level);

namespace zvutil::logging {

/// Passes a line to all running sinks whose level admits it. The texts are NUL-ended UTF-8. A level
/// outside 0 to 5 counts as the nearest one. Any thread.
ZV_LOGGING_EXPORT void write(int level, const char* category, const char* text);

} // namespace zvutil::logging
