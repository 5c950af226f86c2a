#include <zvutil/zvlogging.h>

#include <zvutil/details/log_level.h>

#include <zv_logging/zv_logging.h>

namespace {

// The host's numbers for the sinks of its log.
constexpr int console_sink = 0;
constexpr int file_sink = 1;
constexpr int memory_sink = 2;

} // namespace

void zvlogging_EnableLogging()
{
    add_sink(memory_sink);
    add_sink(file_sink);
    add_sink(console_sink);
    zvutil::logging::write(zvutil::details::log_information, "init", "Logging initialised");
}

void zvlogging_EnableDiagnosticMode()
{
    set_log_level(console_sink, zvutil::details::log_progress);
    set_log_level(memory_sink, zvutil::details::log_progress);
}
