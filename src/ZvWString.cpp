#include <zvutil/ZvWString.h>

#include "impl/ZvBasicString.h"
#include "impl/text/wide_text.h"

#include <QString>

#include <memory>
#include <string_view>
#include <utility>

namespace libzvutil {

ZvWString::ZvWString()
    : ZvAbstractString(std::make_unique<ZvBasicString<wchar_t>>().release())
{
}

ZvWString::ZvWString(const wchar_t* text)
    : ZvWString()
{
    *this += text;
}

ZvWString::ZvWString(const std::wstring& text)
    : ZvWString(text.c_str())
{
}

ZvWString::ZvWString(const ZvWString& other)
    : ZvWString(other.c_str())
{
}

ZvWString::ZvWString(ZvWString&& other) noexcept
    : ZvAbstractString(std::exchange(other.m_implementation, nullptr))
{
}

ZvWString::~ZvWString() = default;

ZvWString& ZvWString::operator+=(const ZvWString& other)
{
    return *this += other.c_str();
}

ZvWString& ZvWString::operator+=(const wchar_t* text)
{
    zvutil::impl::append_wide_units(impl().text, text);
    return *this;
}

ZvWString& ZvWString::operator+=(const std::wstring& text)
{
    return *this += text.c_str();
}

ZvWString& ZvWString::operator+=(wchar_t unit)
{
    zvutil::impl::append_wide_units(impl().text, std::wstring_view(&unit, 1));
    return *this;
}

ZvWString& ZvWString::operator+=(const QString& text)
{
    return *this += text.toStdWString();
}

const wchar_t* ZvWString::c_str() const
{
    return impl().text.c_str();
}

ZvBasicString<wchar_t>& ZvWString::impl()
{
    return static_cast<ZvBasicString<wchar_t>&>(ZvAbstractString::impl());
}

const ZvBasicString<wchar_t>& ZvWString::impl() const
{
    return static_cast<const ZvBasicString<wchar_t>&>(ZvAbstractString::impl());
}

} // namespace libzvutil
