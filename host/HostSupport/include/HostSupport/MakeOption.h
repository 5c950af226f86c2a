#pragma once

#include <HostSupport/HostSupport_export.h>
#include <HostSupport/YString.h>

/// How the host keeps an option's value; this host reads it again each time.
/// @since 0.1 @ingroup host
enum OptionCacheStatus {
    OPTION_DEFAULT_CACHING = 0 ///< as the host does by itself
};

/// Declares an option with its default, for good.
/// @since 0.1 @ingroup host
class HOSTSUPPORT_EXPORT MakeOption
{
public:
    /// Declares an option. A name that is declared already is replaced.
    /// @param source the source file of the declaration
    /// @param line its line there
    /// @param name the option's key in the options file
    /// @param defaultValue the value until the option is set
    /// @param cacheStatus kept, without a meaning here
    /// @param flag kept, without a meaning here
    MakeOption(const char* source, int line, const YString& name, const char* defaultValue,
               OptionCacheStatus cacheStatus, bool flag);
};
