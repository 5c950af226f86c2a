#include <zvutil/ZvBasicString.h>

#include <zvutil/experimental/string/case_insensitive_char_traits.h>

#include "impl/text/text_conversion.h"
#include "impl/text/wide_text.h"

#include <memory>
#include <string_view>
#include <type_traits>

namespace zvutil {

namespace {

template <typename C>
using Text = std::basic_string<C, experimental::string::case_insensitive_char_traits<C>>;

template <typename C>
std::basic_string_view<C> upToNul(const std::basic_string<C>& text)
{
    return text.c_str();
}

template <typename C>
std::basic_string_view<C> viewOf(const Text<C>& text)
{
    return {text.data(), text.size()};
}

/// Whether \p text is already in the units that a string holds.
template <typename C>
bool isInUnits(std::basic_string_view<C> /*text*/)
{
    return true;
}

bool isInUnits(std::wstring_view text)
{
    return impl::is_in_wide_units(text);
}

template <typename C>
void appendUnits(Text<C>& target, std::basic_string_view<C> text)
{
    target.append(text.data(), text.size());
}

void appendUnits(Text<wchar_t>& target, std::wstring_view text)
{
    impl::append_wide_units(target, text);
}

template <typename C>
bool equalUnits(std::basic_string_view<C> a, std::basic_string_view<C> b)
{
    using Traits = experimental::string::case_insensitive_char_traits<C>;
    return a.size() == b.size() && Traits::compare(a.data(), b.data(), a.size()) == 0;
}

template <typename C>
bool equal(const Text<C>& text, std::basic_string_view<C> other)
{
    if (isInUnits(other))
        return equalUnits(viewOf(text), other);
    Text<C> units;
    appendUnits(units, other);
    return equalUnits(viewOf(text), viewOf(units));
}

template <typename Impl, typename C>
std::unique_ptr<Impl> implementationOf(std::basic_string_view<C> incoming)
{
    auto result = std::make_unique<Impl>();
    appendUnits(result->text, incoming);
    return result;
}

} // namespace

template <typename C>
struct ZvBasicString<C>::ZvBasicStringImpl
{
    // The struct has no member functions, since these would be exported along with the class.
    Text<C> text;
};

template <typename C>
ZvBasicString<C>::ZvBasicString()
    : m_impl(std::make_unique<ZvBasicStringImpl>())
{
}

template <typename C>
ZvBasicString<C>::ZvBasicString(const C* text)
    : m_impl(implementationOf<ZvBasicStringImpl>(std::basic_string_view<C>(text)))
{
}

template <typename C>
ZvBasicString<C>::ZvBasicString(const std::basic_string<C>& text)
    : m_impl(implementationOf<ZvBasicStringImpl>(upToNul(text)))
{
}

template <typename C>
ZvBasicString<C>::ZvBasicString(const ZvBasicString& other)
    : m_impl(std::make_unique<ZvBasicStringImpl>(other.m_impl.impl()))
{
}

template <typename C>
ZvBasicString<C>::ZvBasicString(ZvBasicString&& other) noexcept = default;

template <typename C>
ZvBasicString<C>& ZvBasicString<C>::operator=(const ZvBasicString& other)
{
    if (this == &other)
        return *this;
    if (!has_impl(m_impl))
        return *this = ZvBasicString(other);
    m_impl.impl().text = other.m_impl.impl().text;
    return *this;
}

template <typename C>
ZvBasicString<C>& ZvBasicString<C>::operator=(ZvBasicString&& other) noexcept = default;

template <typename C>
ZvBasicString<C>::~ZvBasicString() = default;

template <typename C>
bool ZvBasicString<C>::operator==(const ZvBasicString& other) const
{
    return equalUnits(viewOf(m_impl.impl().text), viewOf(other.m_impl.impl().text));
}

template <typename C>
bool ZvBasicString<C>::operator==(const std::basic_string<C>& other) const
{
    return equal(m_impl.impl().text, upToNul(other));
}

template <typename C>
bool ZvBasicString<C>::operator==(const C* other) const
{
    return equal(m_impl.impl().text, std::basic_string_view<C>(other));
}

template <typename C>
ZvBasicString<C>& ZvBasicString<C>::append(const ZvBasicString& other)
{
    m_impl.impl().text.append(other.m_impl.impl().text);
    return *this;
}

template <typename C>
ZvBasicString<C> ZvBasicString<C>::appended(const ZvBasicString& other) const
{
    const Text<C>& first = m_impl.impl().text;
    const Text<C>& second = other.m_impl.impl().text;
    ZvBasicString result;
    result.m_impl.impl().text.reserve(first.size() + second.size());
    result.m_impl.impl().text.append(first).append(second);
    return result;
}

template <typename C>
const C* ZvBasicString<C>::c_str() const
{
    return m_impl.impl().text.c_str();
}

template <typename C>
const C* ZvBasicString<C>::data() const
{
    return c_str();
}

template <typename C>
std::basic_string<C> ZvBasicString<C>::toStringType() const
{
    const Text<C>& text = m_impl.impl().text;
    return {text.data(), text.size()};
}

template <typename C>
std::string ZvBasicString<C>::toStdString() const
{
    // By contract: toStdString() of narrow text returns the bytes unconverted, so it works where
    // toString() throws.
    if constexpr (std::is_same_v<C, char>) {
        return toStringType();
    } else {
        std::string result;
        impl::append_converted(result, viewOf(m_impl.impl().text));
        return result;
    }
}

template <typename C>
ZvBasicString<char> ZvBasicString<C>::toString() const
{
    ZvBasicString<char> result;
    impl::append_converted(result.m_impl.impl().text, viewOf(m_impl.impl().text));
    return result;
}

template <typename C>
ZvBasicString<wchar_t> ZvBasicString<C>::toWString() const
{
    ZvBasicString<wchar_t> result;
    impl::append_converted(result.m_impl.impl().text, viewOf(m_impl.impl().text));
    return result;
}

template <typename C>
ZvBasicString<char16_t> ZvBasicString<C>::toU16String() const
{
    ZvBasicString<char16_t> result;
    impl::append_converted(result.m_impl.impl().text, viewOf(m_impl.impl().text));
    return result;
}

template <typename C>
ZvBasicString<char32_t> ZvBasicString<C>::toU32String() const
{
    ZvBasicString<char32_t> result;
    impl::append_converted(result.m_impl.impl().text, viewOf(m_impl.impl().text));
    return result;
}

template class ZVUTIL_TEMPLATE_DEFINE ZvBasicString<char>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicString<char16_t>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicString<char32_t>;
template class ZVUTIL_TEMPLATE_DEFINE ZvBasicString<wchar_t>;

} // namespace zvutil
