#include "impl/xml/xml_text.h"

#include <algorithm>

namespace zvutil::impl {

QString xml_name(const std::string& name)
{
    return QString::fromStdString(name);
}

QString xml_name(const std::u16string& name)
{
    return QString::fromStdU16String(name);
}

QString xml_name(const std::u32string& name)
{
    return QString::fromStdU32String(name);
}

QString xml_name(const std::wstring& name)
{
    return QString::fromStdWString(name);
}

QString xml_text(const char* text, int length)
{
    // Pass -1 for any negative length: here only -1 means a text that ends in a NUL, below any
    // negative length does.
    return QString::fromUtf8(text, std::max(length, -1));
}

QString xml_text(const char16_t* text, int length)
{
    return QString::fromUtf16(text, length);
}

QString xml_text(const char32_t* text, int length)
{
    return QString::fromUcs4(text, length);
}

QString xml_text(const wchar_t* text, int length)
{
    return QString::fromWCharArray(text, length);
}

} // namespace zvutil::impl
