#pragma once

#include <zvutil/zvutil_export.h>

#include <cstddef>
#include <string>

namespace zvutil::experimental::string {

/// The standard character traits, except that `compare` ignores case. The library has them for
/// `char`, `char16_t`, `char32_t` and `wchar_t`.
///
/// Only `compare` folds: `eq`, `lt`, `find` and `length` are those of `std::char_traits<C>`.
/// @since 0.1 @ingroup text
template <typename C>
struct case_insensitive_char_traits : std::char_traits<C>
{
    /// Compares texts by their upper case forms. The first position whose forms differ decides: for
    /// `char` as signed values of 8 bits, so that a byte at or above 0x80 sorts before any letter;
    /// for the others as unsigned values. Letters sort before the signs between `Z` and `a`.
    ///
    /// Upper case is that of the locale that was the global one when units of this type were first
    /// compared; later changes of the global locale have no effect. For `char16_t` and `wchar_t` it
    /// is the one of wide characters, each 16-bit unit by itself; for `char` and `char32_t` the one
    /// of narrow characters, and a `char32_t` above 0xFF has none. With \p n of 0 no locale is
    /// read.
    ///
    /// Any thread. Takes linear time and allocates nothing.
    /// @param a has \p n units
    /// @param b has \p n units
    /// @param n how many units are compared, NULs included
    /// @return -1, 0 or 1 if \p a comes before \p b, equals it or comes after it
    static int compare(const C* a, const C* b, std::size_t n);
};

/// @cond
/// `compare` for bytes.
template <>
ZVUTIL_EXPORT int case_insensitive_char_traits<char>::compare(const char* a, const char* b,
                                                              std::size_t n);
/// `compare` for UTF-16.
template <>
ZVUTIL_EXPORT int case_insensitive_char_traits<char16_t>::compare(const char16_t* a,
                                                                  const char16_t* b, std::size_t n);
/// `compare` for UTF-32, whose units above 0xFF have no case.
template <>
ZVUTIL_EXPORT int case_insensitive_char_traits<char32_t>::compare(const char32_t* a,
                                                                  const char32_t* b, std::size_t n);
/// `compare` for wide text in 16-bit units.
template <>
ZVUTIL_EXPORT int case_insensitive_char_traits<wchar_t>::compare(const wchar_t* a, const wchar_t* b,
                                                                 std::size_t n);
/// @endcond

} // namespace zvutil::experimental::string
