#pragma once

#include <string>
#include <string_view>

namespace zvutil::impl {

/// The text that is parsed for the file URI of \p path: "file:/" and the path's text, with each
/// 16-bit unit as UTF-8 by itself.
std::string file_uri_text(std::wstring_view path);

} // namespace zvutil::impl
