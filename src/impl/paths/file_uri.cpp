#include "impl/paths/file_uri.h"

#include "impl/text/utf8.h"

namespace zvutil::impl {

std::string file_uri_text(std::wstring_view path)
{
    // By contract: file_uri_text() writes one slash after the scheme, whatever the path begins with.
    // Modules depend on the text, although a full URI of an absolute path has three.
    std::string text = "file:/";
    append_units_as_utf8(text, path);
    return text;
}

} // namespace zvutil::impl
