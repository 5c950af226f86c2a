#pragma once

#include <zvutil/zvutil_export.h>

extern "C" {

/// Starts the host's three log sinks and logs "Logging initialised". Nothing in the library calls
/// it; the application does. It may be called again: sinks that run stay, the line is written once
/// more. Any thread.
ZVUTIL_EXPORT void zvlogging_EnableLogging();

/// Makes the console and the memory sink also keep the progress of background work, also if they
/// are started later. It may be called again. Any thread.
ZVUTIL_EXPORT void zvlogging_EnableDiagnosticMode();
}
