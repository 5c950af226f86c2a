#pragma once

#include <zvutil/zvutil_export.h>

extern "C" {

/// Starts the host's three log sinks and logs "Logging initialised". Only the
/// application calls this. Another call keeps the sinks that run and logs the line once more. Any
/// thread.
/// @since 0.1 @ingroup basics
ZVUTIL_EXPORT void zvlogging_EnableLogging();

/// Makes the console and the memory sink also keep the progress of background work, even if they are
/// started later. Another call changes nothing. Any thread.
/// @since 0.1 @ingroup basics
ZVUTIL_EXPORT void zvlogging_EnableDiagnosticMode();
}
