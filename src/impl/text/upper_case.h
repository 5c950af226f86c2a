#pragma once

#include <algorithm>
#include <locale>
#include <string>
#include <string_view>
#include <vector>

namespace zvutil::impl {

/// Upper case of 16-bit units, each by itself, in a locale. A unit whose upper case isn't a 16-bit
/// unit is kept.
class upper_case
{
public:
    /// Asks \p locale for all units, once.
    explicit upper_case(const std::locale& locale);

    char16_t operator()(char16_t unit) const { return m_table[unit]; }

    /// Sets \p target to the upper case of \p text; its memory is used again.
    template <typename Unit>
    void assign(std::basic_string<Unit>& target, std::basic_string_view<Unit> text) const
    {
        target.resize(text.size());
        std::transform(text.begin(), text.end(), target.begin(), [this](Unit unit) {
            return static_cast<Unit>(m_table[static_cast<char16_t>(unit)]);
        });
    }

private:
    std::vector<char16_t> m_table;
};

} // namespace zvutil::impl
