// Any bytes as a URI: nothing is refused, the views lie in the text, and a second parse changes
// nothing.

#include <zvutil/uri.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void checkView(std::string_view part, const std::string& text)
{
    require(
        part.empty()
        || (part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size()));
}

void checkSplit(const zvutil::uri& uri)
{
    const std::string& text = uri.text();
    for (const std::string_view part : {uri.scheme(), uri.authority(), uri.userinfo(), uri.host(),
                                        uri.port(), uri.path(), uri.query(), uri.fragment()})
        checkView(part, text);
    require(text.find_first_of(" \\") == std::string::npos);
    require(uri.scheme().empty() == (uri.kind() == zvutil::UriKind::None));
    require(uri.kind() != zvutil::UriKind::Unknown);
    require(uri.port().find_first_not_of("0123456789") == std::string_view::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const zvutil::uri uri(input);
    checkSplit(uri);
    const zvutil::uri again(uri.text());
    require(again.text() == uri.text());
    require(again.host() == uri.host() && again.path() == uri.path());
    checkSplit(zvutil::uri(input.c_str()));
    return 0;
}
