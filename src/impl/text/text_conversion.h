#pragma once

#include "impl/text/ascii_step.h"
#include "impl/text/surrogates.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace zvutil::impl {

/// The code of a unit by itself, which is above 0x10FFFF if it is no code.
template <typename Source>
char32_t code_of(Source unit)
{
    // By contract: a byte keeps its sign, so every byte from 0x80 on is out of range. The encoding
    // of narrow text is unknown.
    if constexpr (std::is_same_v<Source, char>)
        return static_cast<char32_t>(static_cast<signed char>(unit));
    else
        return static_cast<char32_t>(unit);
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

/// How far a conversion has come.
template <typename Target, typename Source>
struct converted_range
{
    Target* target;
    const Source* source;
};

/// Converts the units up to \p end, or up to the first that is no code.
template <typename Target, typename Source>
converted_range<Target, Source> write_converted(Target* target, const Source* source,
                                                const Source* end)
{
    while (end - source >= ascii_step) {
        const std::ptrdiff_t plain = copy_ascii_run(target, source, end);
        source += plain;
        target += plain;
        for (; source != end && !is_ascii(*source); ++source) {
            const char32_t code = code_of(*source);
            if (code > 0x10FFFF)
                return {target, source};
            target = write_code(target, code);
        }
    }
    for (; source != end; ++source) {
        const char32_t code = code_of(*source);
        if (code > 0x10FFFF)
            break;
        target = write_code(target, code);
    }
    return {target, source};
}

/// Appends \p source, converted unit by unit: to UTF-8 if the target has bytes, else to UTF-16. The
/// result equals writing the source as UTF-8 and reading that again. Throws `std::range_error` with
/// "bad conversion" for a byte above 0x7F and for a value above 0x10FFFF; \p target then holds a
/// part of the text.
template <typename Target, typename Traits, typename Source>
void append_converted(std::basic_string<Target, Traits>& target,
                      std::basic_string_view<Source> source);

} // namespace zvutil::impl
