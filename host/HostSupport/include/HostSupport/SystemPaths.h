#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// Writes the path of a symbol into \p value, in UTF-8.
///
/// Known are "ZVAPPDATAPATH", "ZVDOCSPATH", "COMMON_APPDATAPATH" and what `host::setPathSymbol` has
/// set. Returns 0, or 1 for an unknown symbol, which makes \p value empty. \p create has no meaning
/// here.
HOSTSUPPORT_EXPORT int sp_GetSystemPathSymbolValue(const char* symbol, YString* value, bool create);

/// The name of the folder that the host's product keeps its common data in, in UTF-8.
HOSTSUPPORT_EXPORT YString sp_GetProductFolderName();
