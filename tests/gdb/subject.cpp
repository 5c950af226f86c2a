// Something for GDB to look at.

#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/uri.h>

#include <utility>

using zvutil::ZvBasicString;

int main()
{
    const zvutil::ZvFilePath path(L"C:\\a b/\x20AC");
    const zvutil::ZvFilePath emptyPath;
    const ZvBasicString<char> narrow("say \"hi\"");
    const ZvBasicString<char16_t> units(u"\xD834\xDD1E!");
    const ZvBasicString<char32_t> codes(U"\x1D11E!");
    const ZvBasicString<wchar_t> wide(L"\xD834\xDD1E!");
    const zvutil::uri uri("http://srv/a b");
    ZvBasicString<char> source("gone");
    const ZvBasicString<char> target(std::move(source));
    return path.isEmpty() || target.c_str() == nullptr; // the breakpoint
}
