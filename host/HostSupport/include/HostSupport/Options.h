#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// Reads an option into \p value: its current text if it has been set, else the default that it was
/// declared with, else \p defaultValue, which may be the same object as \p value.
///
/// Returns 0 if the option has been set or declared, otherwise 1. Reads the options file.
HOSTSUPPORT_EXPORT int sp_ReadOptionsInfo(const char* name, YString* value,
                                          const YString& defaultValue);
