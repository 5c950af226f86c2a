#include <zvutil/zvlogging.h>

#include <zv_logging/zv_logging.h>

namespace {

// The host's numbers for the sinks and levels of its log.
constexpr int consoleSink = 0;
constexpr int fileSink = 1;
constexpr int memorySink = 2;
constexpr int progressLevel = 1;
constexpr int informationLevel = 2;

} // namespace

void zvlogging_EnableLogging()
{
    add_sink(memorySink);
    add_sink(fileSink);
    add_sink(consoleSink);
    zvutil::logging::write(informationLevel, "init", "Logging initialised");
}

void zvlogging_EnableDiagnosticMode()
{
    set_log_level(consoleSink, progressLevel);
    set_log_level(memorySink, progressLevel);
}
