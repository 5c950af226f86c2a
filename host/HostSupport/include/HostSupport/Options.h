#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// Reads an option: its current text if it has been set, else the default that it was declared
/// with, else \p defaultValue. Reads the options file.
/// @param name the option's key
/// @param value receives the text
/// @param defaultValue may be the same object as \p value
/// @return 0 if the option has been set or declared, otherwise 1
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT int sp_ReadOptionsInfo(const char* name, YString* value,
                                          const YString& defaultValue);
