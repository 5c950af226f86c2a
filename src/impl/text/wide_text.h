#pragma once

#include "impl/text/surrogates.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace zvutil::impl {

/// Wide text is UTF-16 everywhere: one `wchar_t` holds one 16-bit unit, even where it has 32 bits.
/// All wide input passes through this header; no other code depends on the width of `wchar_t`.

/// Whether all values of \p text are at most 0xFFFF, so that it needs no conversion.
inline bool is_in_wide_units(std::wstring_view text)
{
    // The compiler looks at several units at once in a loop of known length.
    constexpr std::size_t block = 16;
    char32_t all = 0;
    while (text.size() >= block) {
        for (std::size_t i = 0; i < block; ++i)
            all |= static_cast<char32_t>(text[i]);
        text.remove_prefix(block);
    }
    for (const wchar_t c : text)
        all |= static_cast<char32_t>(c);
    return all >> 16 == 0;
}

/// Appends \p text to a wide string in 16-bit units. Where `wchar_t` has 32 bits, a value above
/// 0xFFFF becomes its surrogate pair, and one above 0x10FFFF becomes U+FFFD.
template <typename WideString>
void append_wide_units(WideString& target, std::wstring_view text)
{
    if constexpr (sizeof(wchar_t) == sizeof(char16_t)) {
        target.append(text.data(), text.size());
    } else {
        std::size_t plain = 0;
        while (plain < text.size() && static_cast<char32_t>(text[plain]) <= 0xFFFF)
            ++plain;
        target.append(text.data(), plain);
        for (const wchar_t c : text.substr(plain)) {
            const char32_t value = static_cast<char32_t>(c);
            if (value <= 0xFFFF) {
                target.push_back(c);
            } else if (value > 0x10FFFF) {
                target.push_back(static_cast<wchar_t>(0xFFFD));
            } else {
                target.push_back(static_cast<wchar_t>(high_surrogate(value)));
                target.push_back(static_cast<wchar_t>(low_surrogate(value)));
            }
        }
    }
}

/// \p text in 16-bit units, as `append_wide_units` makes them.
inline std::wstring wide_text(std::wstring_view text)
{
    std::wstring result;
    result.reserve(text.size());
    append_wide_units(result, text);
    return result;
}

} // namespace zvutil::impl
