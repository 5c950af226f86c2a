#pragma once

#include <array>

namespace zvutil::impl {

/// Random bytes from the operating system, which are never given out twice, also not in a forked
/// child. Any thread; most calls cost no system call.
std::array<unsigned char, 16> take_random();

} // namespace zvutil::impl
