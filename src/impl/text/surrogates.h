#pragma once

namespace zvutil::impl {

/// The two 16-bit units of a code point from 0x10000 to 0x10FFFF.
constexpr char32_t high_surrogate(char32_t code)
{
    return 0xD7C0 + (code >> 10);
}

constexpr char32_t low_surrogate(char32_t code)
{
    return 0xDC00 + (code & 0x3FF);
}

} // namespace zvutil::impl
