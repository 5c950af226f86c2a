#pragma once

#include <QString>

#include <string>
#include <string_view>

/// UTF-8 and text in 16-bit units. Each template exists for `char16_t` and `wchar_t`.
namespace zvutil::impl {

/// Decodes strict UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
/// Throws `std::system_error` with `EILSEQ` of the system category at the first bad sequence.
template <typename Unit>
std::basic_string<Unit> decode_utf8(std::string_view bytes);

/// Equals `QString::fromUtf8`, which puts U+FFFD for bytes that aren't UTF-8, except that a byte
/// order mark at the start is a character like any other.
QString any_utf8_text(std::string_view bytes);

template <typename Unit>
std::basic_string<Unit> decode_any_utf8(std::string_view bytes);

/// Appends each 16-bit unit by itself, in one to three bytes. A surrogate is written like any other
/// unit, so paired ones don't give proper UTF-8, as all callers require.
template <typename Unit>
void append_units_as_utf8(std::string& target, std::basic_string_view<Unit> units);

/// Appends proper UTF-8; an unpaired surrogate is written in three bytes like any other unit.
template <typename Unit>
void append_utf16_as_utf8(std::string& target, std::basic_string_view<Unit> text);

} // namespace zvutil::impl
