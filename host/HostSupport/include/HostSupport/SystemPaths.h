#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// Asks for the path of a symbol. Known are "ZVAPPDATAPATH", "ZVDOCSPATH", "COMMON_APPDATAPATH" and
/// what `host::setPathSymbol` has set.
/// @param symbol the name
/// @param value receives the path in UTF-8; empty for an unknown symbol
/// @param create without a meaning here
/// @return 0, or 1 for an unknown symbol
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT int sp_GetSystemPathSymbolValue(const char* symbol, YString* value, bool create);

/// @return the name of the folder that the host's product keeps its common data in, in UTF-8.
/// @since 0.1 @ingroup host
HOSTSUPPORT_EXPORT YString sp_GetProductFolderName();
