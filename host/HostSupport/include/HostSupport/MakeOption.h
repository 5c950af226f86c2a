#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// How the host keeps an option's value; this host reads it again each time.
enum OptionCacheStatus { OPTION_DEFAULT_CACHING = 0 };

/// Declares an option with its default, for good.
class HOSTSUPPORT_EXPORT MakeOption
{
public:
    /// \p source and \p line tell where the option is declared. \p cacheStatus and \p flag are kept
    /// and have no meaning here. A name that is declared already is replaced.
    MakeOption(const char* source, int line, const YString& name, const char* defaultValue,
               OptionCacheStatus cacheStatus, bool flag);
};
