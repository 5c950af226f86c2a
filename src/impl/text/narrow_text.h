#pragma once

#include <string>
#include <string_view>

namespace zvutil::impl {

/// Decodes text in the platform's encoding for narrow file names: the code page that the C run-time
/// library uses for them on Windows, UTF-8 elsewhere. Decoding is strict.
///
/// Throws `std::system_error`: `EINVAL` of the generic category from 2 GiB on, the operating system's
/// error of the system category (`EILSEQ` where there are no code pages) for a bad sequence.
std::wstring decode_narrow(std::string_view bytes);

/// The same for UTF-8, on every platform.
std::wstring decode_utf8_text(std::string_view bytes);

} // namespace zvutil::impl
