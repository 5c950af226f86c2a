#pragma once

#include "impl/text/ascii_step.h"
#include "impl/text/surrogates.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace zvutil::impl {

/// Throws `std::range_error` with the text "bad conversion".
[[noreturn]] void throw_bad_conversion();

/// The code of a unit by itself. Throws as above if it is no code.
template <typename Source>
char32_t code_of(Source unit)
{
    char32_t code = static_cast<char32_t>(unit);
    // By contract: a byte keeps its sign, so every byte from 0x80 on is out of range. The encoding
    // of narrow text is unknown.
    if constexpr (std::is_same_v<Source, char>)
        code = static_cast<char32_t>(static_cast<signed char>(unit));
    if (code > 0x10FFFF)
        throw_bad_conversion();
    return code;
}

/// Writes \p code in UTF-8, even if it is a surrogate; returns the end.
inline char* write_code(char* target, char32_t code)
{
    if (code < 0x80) {
        *target++ = static_cast<char>(code);
        return target;
    }
    if (code < 0x800) {
        *target++ = static_cast<char>(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            *target++ = static_cast<char>(0xE0 | (code >> 12));
        } else {
            *target++ = static_cast<char>(0xF0 | (code >> 18));
            *target++ = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        }
        *target++ = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    }
    *target++ = static_cast<char>(0x80 | (code & 0x3F));
    return target;
}

/// Writes \p code in UTF-16, for `char32_t` as well; returns the end.
template <typename Target>
Target* write_code(Target* target, char32_t code)
{
    if (code < 0x10000) {
        *target++ = static_cast<Target>(code);
    } else {
        // By contract: a code above 0xFFFF becomes two units even for char32_t, which could hold
        // it. Conversion to any wider type is conversion to UTF-16.
        *target++ = static_cast<Target>(high_surrogate(code));
        *target++ = static_cast<Target>(low_surrogate(code));
    }
    return target;
}

/// Converts the units up to \p end; returns the end of the output.
template <typename Target, typename Source>
Target* write_converted(Target* target, const Source* source, const Source* end)
{
    while (end - source >= ascii_step) {
        const std::ptrdiff_t plain = copy_ascii_step(target, source);
        source += plain;
        target += plain;
        if (plain == ascii_step)
            continue;
        do
            target = write_code(target, code_of(*source++));
        while (source != end && !is_ascii(*source));
    }
    for (; source != end; ++source)
        target = write_code(target, code_of(*source));
    return target;
}

/// Appends \p source, converted unit by unit: to UTF-8 if the target has bytes, else to UTF-16. The
/// result equals writing the source as UTF-8 and reading that again. Throws `std::range_error` with
/// "bad conversion" for a byte above 0x7F and for a value above 0x10FFFF; \p target then holds a
/// part of the text.
template <typename Target, typename Traits, typename Source>
void append_converted(std::basic_string<Target, Traits>& target,
                      std::basic_string_view<Source> source)
{
    // Convert in blocks: the space for a whole text would first have to be filled with zeros.
    constexpr std::size_t blockSize = 512;
    constexpr std::size_t longestCode = std::is_same_v<Target, char> ? 4 : 2;
    std::array<Target, longestCode * blockSize> buffer;
    if (source.size() > blockSize)
        target.reserve(target.size() + source.size());
    while (!source.empty()) {
        const std::basic_string_view<Source> block = source.substr(0, blockSize);
        const Target* const end =
            write_converted(buffer.data(), block.data(), block.data() + block.size());
        target.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
        source.remove_prefix(block.size());
    }
}

} // namespace zvutil::impl
