#pragma once

#include <cstdint>

namespace zvutil {

/// The class of a URI's scheme.
/// @since 0.1 @ingroup paths
enum class UriKind : std::int32_t {
    None = 0, ///< no scheme: the text is no URI of a known scheme, or empty
    File = 1, ///< `file`
    Http = 2, ///< `http`
    Https = 3, ///< `https`
    Unknown = 4 ///< another scheme; no finished parse has it
};

} // namespace zvutil
