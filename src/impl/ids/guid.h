#pragma once

#include <array>

namespace zvutil::impl {

/// The 128 bits of an identifier, in the order in which its text shows them.
using guid = std::array<unsigned char, 16>;

/// A new identifier, from the platform's cryptographic source. Any thread.
guid make_guid();

} // namespace zvutil::impl
