#include "impl/text/upper_case.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <typeinfo>

namespace zvutil::impl {

namespace {

#if defined(__MINGW32__)

/// Whether \p facet asks the C library. MinGW has only the locale "C", but its facet asks the C
/// library for another one: letters of that would fold, and a later `setlocale` would change which
/// texts are equal.
bool asksCLibrary(const std::ctype<wchar_t>& facet)
{
    return typeid(facet) == typeid(std::ctype<wchar_t>)
        || typeid(facet) == typeid(std::ctype_byname<wchar_t>);
}

wchar_t upperAscii(wchar_t unit)
{
    return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit;
}

void makeUpper(std::vector<wchar_t>& units, const std::ctype<wchar_t>& facet)
{
    if (asksCLibrary(facet))
        std::transform(units.begin(), units.end(), units.begin(), &upperAscii);
    else
        facet.toupper(units.data(), units.data() + units.size());
}

#else

void makeUpper(std::vector<wchar_t>& units, const std::ctype<wchar_t>& facet)
{
    facet.toupper(units.data(), units.data() + units.size());
}

#endif

} // namespace

upper_case::upper_case(const std::locale& locale)
    : m_table(0x10000)
{
    std::vector<wchar_t> units(m_table.size());
    std::iota(units.begin(), units.end(), L'\0');
    makeUpper(units, std::use_facet<std::ctype<wchar_t>>(locale));
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto upper = static_cast<char32_t>(units[i]);
        m_table[i] = static_cast<char16_t>(upper < units.size() ? upper : i);
    }
}

} // namespace zvutil::impl
