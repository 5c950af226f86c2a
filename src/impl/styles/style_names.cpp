#include "impl/styles/style_names.h"

#include <cstddef>
#include <iterator>
#include <string_view>

namespace libzvutil::impl {

namespace {

constexpr const char* brushes[] = {
    "Panel",
    "EditorEnabled",
    "EditorDisabled",
    "EditorFocus",
    "EditorHover",
    "InteractiveEnabled",
    "InteractiveHover",
    "InteractivePressed",
    "BorderEditorEnabled",
    "BorderEditorDisabled",
    "BorderEditorFocus",
    "BorderEditorHover",
    "BorderInteractiveEnabled",
    "BorderInteractiveDisabled",
    "BorderInteractiveHover",
    "BorderInteractivePressed",
    "Accent",
    "AccentL1",
    "AccentL2",
    "AccentL3",
    "AccentD1",
    "AccentD2",
    "AccentD3",
    "AccentForeground",
    "TextEnabled",
    "TextDisabled",
    "TextHover",
    "TOTAL",
};
static_assert(std::size(brushes) == static_cast<std::size_t>(ZvStyleBrush::TOTAL) + 1);

constexpr const char* icons[] = {"CheckboxTick", "CheckboxIndeterminate", "Close", "Menu", "TOTAL"};
static_assert(std::size(icons) == static_cast<std::size_t>(ZvStyleIcon::TOTAL) + 1);

template <std::size_t count, typename Enum>
const char* nameIn(const char* const (&names)[count], Enum value)
{
    const auto index = static_cast<std::size_t>(value);
    return index < count ? names[index] : "UNDEFINED";
}

/// The enumerator of a name, `TOTAL` included.
template <typename Enum, std::size_t count>
Enum valueIn(const char* const (&names)[count], std::string_view name)
{
    std::size_t index = 0;
    while (index < count - 1 && name != names[index])
        ++index;
    return static_cast<Enum>(index);
}

} // namespace

const char* name(ZvStyleBrush brush)
{
    return nameIn(brushes, brush);
}

const char* name(ZvStyleIcon icon)
{
    return nameIn(icons, icon);
}

ZvStyleBrush brush_from_name(const char* name)
{
    const auto brush = valueIn<ZvStyleBrush>(brushes, name);
    // By contract: brush_from_name() returns TOTAL for the accent brushes. Files can't set the
    // accent, which is always the host's.
    const bool isAccent = brush >= ZvStyleBrush::Accent && brush <= ZvStyleBrush::AccentForeground;
    return isAccent ? ZvStyleBrush::TOTAL : brush;
}

ZvStyleIcon icon_from_name(const char* name)
{
    return valueIn<ZvStyleIcon>(icons, name);
}

} // namespace libzvutil::impl
