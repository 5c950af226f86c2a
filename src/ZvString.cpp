#include <zvutil/ZvString.h>

#include "impl/ZvBasicString.h"

#include <QString>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace libzvutil {

namespace {

using Traits = zvutil::experimental::string::case_insensitive_char_traits<char>;
using View = std::basic_string_view<char, Traits>;

int compareTexts(View a, View b)
{
    const int order = Traits::compare(a.data(), b.data(), std::min(a.size(), b.size()));
    if (order != 0 || a.size() == b.size())
        return order;
    return a.size() < b.size() ? -1 : 1;
}

} // namespace

ZvString::ZvString()
    : ZvAbstractString(std::make_unique<ZvBasicString<char>>().release())
{
}

ZvString::ZvString(const char* text)
    : ZvString()
{
    impl().text = text;
}

ZvString::ZvString(const ZvString& other)
    : ZvString(other.c_str())
{
}

ZvString::ZvString(ZvString&& other) noexcept
    : ZvAbstractString(std::exchange(other.m_implementation, nullptr))
{
}

ZvString& ZvString::operator=(const ZvString& other)
{
    if (this == &other)
        return *this;
    if (!m_implementation)
        *this = ZvString();
    impl().text = other.impl().text;
    return *this;
}

ZvString& ZvString::operator=(ZvString&& other) noexcept
{
    ZvString taken(std::move(other));
    std::swap(m_implementation, taken.m_implementation);
    return *this;
}

ZvString::~ZvString() = default;

ZvString& ZvString::operator+=(const ZvString& other)
{
    return *this += other.c_str();
}

ZvString& ZvString::operator+=(const char* text)
{
    impl().text += text;
    return *this;
}

ZvString& ZvString::operator+=(const std::basic_string<char, Traits>& text)
{
    return *this += text.c_str();
}

ZvString& ZvString::operator+=(char unit)
{
    impl().text += unit;
    return *this;
}

ZvString& ZvString::operator+=(const QString& text)
{
    return *this += text.toUtf8().constData();
}

int ZvString::compare(const ZvString& other) const
{
    return compareTexts(impl().text, other.impl().text);
}

int ZvString::compare(const char* text) const
{
    return compareTexts(impl().text, text);
}

const char* ZvString::c_str() const
{
    return impl().text.c_str();
}

QString ZvString::toQString() const
{
    return QString::fromUtf8(c_str());
}

ZvBasicString<char>& ZvString::impl()
{
    return static_cast<ZvBasicString<char>&>(ZvAbstractString::impl());
}

const ZvBasicString<char>& ZvString::impl() const
{
    return static_cast<const ZvBasicString<char>&>(ZvAbstractString::impl());
}

} // namespace libzvutil
