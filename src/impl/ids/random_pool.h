#pragma once

#include <array>

namespace zvutil::impl {

/// Returns random bytes from the operating system, never the same twice, not even in a forked
/// child. Any thread; most calls make no system call.
std::array<unsigned char, 16> take_random();

} // namespace zvutil::impl
