#include "impl/upper_case.h"

#include <cstddef>
#include <numeric>

namespace zvutil::impl {

upper_case::upper_case(const std::locale& locale)
    : m_table(0x10000)
{
    std::vector<wchar_t> units(m_table.size());
    std::iota(units.begin(), units.end(), L'\0');
    std::use_facet<std::ctype<wchar_t>>(locale).toupper(units.data(), units.data() + units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto upper = static_cast<char32_t>(units[i]);
        m_table[i] = static_cast<char16_t>(upper < units.size() ? upper : i);
    }
}

} // namespace zvutil::impl
