// Something for GDB to look at.

#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvURI.h>
#include <zvutil/ZvUUID.h>
#include <zvutil/ZvWString.h>
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
    const ZvURI handle("a b");
    const zvutil::uuid plainId("3F25");
    const zvutil::ZvUUID id("3F2504E0");
    const libzvutil::ZvString appendable("say \"hi\"");
    const libzvutil::ZvWString wideAppendable(L"\xD834\xDD1E!");
    ZvBasicString<char> source("gone");
    const ZvBasicString<char> target(std::move(source));
    const ZvTable table(2, 3, 0);
    const ZvTable noTable;
    return path.isEmpty() || target.c_str() == nullptr; // the breakpoint
}
