#pragma once

#include <locale>
#include <string>
#include <vector>

namespace zvutil::impl {

/// Upper case of 16-bit units, each by itself, as a locale has it. A unit whose upper case is no
/// 16-bit unit is kept.
class upper_case
{
public:
    /// Asks the locale for all units once.
    explicit upper_case(const std::locale& locale);

    template <typename Unit>
    void apply(std::basic_string<Unit>& text) const
    {
        for (Unit& unit : text)
            unit = static_cast<Unit>(m_table[static_cast<char16_t>(unit)]);
    }

private:
    std::vector<char16_t> m_table;
};

} // namespace zvutil::impl
