#pragma once

#include <array>

namespace zvutil::impl {

/// The 128 bits of an identifier, in the order of its text.
using guid = std::array<unsigned char, 16>;

/// Makes a new identifier from the platform's cryptographic source. Any thread.
guid make_guid();

} // namespace zvutil::impl
