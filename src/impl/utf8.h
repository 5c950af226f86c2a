#pragma once

#include <string>
#include <string_view>

namespace zvutil::impl {

/// Decodes strict UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
/// Throws `std::system_error` with `EILSEQ` of the system category at the first bad sequence.
std::u16string decode_utf8(std::string_view bytes);

/// Appends each 16-bit unit by itself, in one to three bytes. A surrogate is written like any other
/// unit, so that the result of paired ones isn't proper UTF-8. That is wanted wherever it is
/// called.
void append_units_as_utf8(std::string& target, std::u16string_view units);

} // namespace zvutil::impl
