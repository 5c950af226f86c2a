#pragma once

#include <string>
#include <string_view>

namespace zvutil::impl {

/// What is parsed for the file URI of a path: "file:/" and the path's text, each 16-bit unit of it as
/// UTF-8 by itself.
std::string file_uri_text(std::wstring_view path);

} // namespace zvutil::impl
