#pragma once

#include <cstdint>

namespace zvutil {

/// The class of a URI's scheme.
enum class UriKind : std::int32_t {
    None = 0, ///< no scheme: the text is no URI of a known scheme, or empty
    File = 1,
    Http = 2,
    Https = 3,
    Unknown = 4 ///< another scheme; no finished parse has it
};

} // namespace zvutil
