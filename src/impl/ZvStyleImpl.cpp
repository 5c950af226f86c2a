#include "impl/ZvStyleImpl.h"

#include "impl/styles/style_names.h"
#include "impl/styles/variable_substitution.h"

#include <HostSupport/MakeOption.h>
#include <HostSupport/Options.h>

#include <QColor>
#include <QLatin1String>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <locale>
#include <string_view>

namespace libzvutil {

namespace {

constexpr char accentOption[] = "ZvStyleAccent";
constexpr char defaultAccent[] = "#2D7D9A";

const MakeOption registration("src\\impl\\ZvStyleImpl", 13, accentOption, defaultAccent,
                              OPTION_DEFAULT_CACHING, true);

QColor hostAccent()
{
    YString text;
    sp_ReadOptionsInfo(accentOption, &text, defaultAccent);
    return text.c_str();
}

/// Whether two names are equal except for case in the global locale.
bool equalNames(std::string_view a, std::string_view b)
{
    const std::locale global;
    const auto& facet = std::use_facet<std::ctype<char>>(global);
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&facet](char x, char y) { return facet.toupper(x) == facet.toupper(y); });
}

template <typename Editors>
auto findEditor(Editors& editors, const char* name)
{
    const auto found =
        std::find_if(editors.begin(), editors.end(), [name](const ZvEditorStyle& editor) {
            return equalNames(editor.name(), name);
        });
    return found == editors.end() ? nullptr : &*found;
}

struct BrushVariable
{
    const char* name;
    ZvStyleBrush brush;
};

struct IconVariable
{
    const char* name;
    ZvStyleIcon icon;
};

// Variables are replaced in this order: "@accent" comes after the variables that it is the
// beginning of.
constexpr BrushVariable brushVariables[] = {
    {"@panel", ZvStyleBrush::Panel},
    {"@editorEnabled", ZvStyleBrush::EditorEnabled},
    {"@editorDisabled", ZvStyleBrush::EditorDisabled},
    {"@editorFocus", ZvStyleBrush::EditorFocus},
    {"@editorHover", ZvStyleBrush::EditorHover},
    {"@interactiveEnabled", ZvStyleBrush::InteractiveEnabled},
    {"@interactiveHover", ZvStyleBrush::InteractiveHover},
    {"@interactivePressed", ZvStyleBrush::InteractivePressed},
    {"@borderEditorEnabled", ZvStyleBrush::BorderEditorEnabled},
    {"@borderEditorDisabled", ZvStyleBrush::BorderEditorDisabled},
    {"@borderEditorFocus", ZvStyleBrush::BorderEditorFocus},
    {"@borderEditorHover", ZvStyleBrush::BorderEditorHover},
    {"@borderInteractiveEnabled", ZvStyleBrush::BorderInteractiveEnabled},
    {"@borderInteractiveDisabled", ZvStyleBrush::BorderInteractiveDisabled},
    {"@borderInteractiveHover", ZvStyleBrush::BorderInteractiveHover},
    {"@borderInteractivePressed", ZvStyleBrush::BorderInteractivePressed},
    {"@accentD1", ZvStyleBrush::AccentD1},
    {"@accentD2", ZvStyleBrush::AccentD2},
    {"@accentD3", ZvStyleBrush::AccentD3},
    {"@accentL1", ZvStyleBrush::AccentL1},
    {"@accentL2", ZvStyleBrush::AccentL2},
    {"@accentL3", ZvStyleBrush::AccentL3},
    {"@accentForeground", ZvStyleBrush::AccentForeground},
    {"@accent", ZvStyleBrush::Accent},
    {"@textEnabled", ZvStyleBrush::TextEnabled},
    {"@textDisabled", ZvStyleBrush::TextDisabled},
    {"@textHover", ZvStyleBrush::TextHover},
};

constexpr IconVariable iconVariables[] = {
    {"@iconCheckboxTick", ZvStyleIcon::CheckboxTick},
    {"@iconCheckboxIndeterminate", ZvStyleIcon::CheckboxIndeterminate},
    {"@iconClose", ZvStyleIcon::Close},
    {"@iconMenu", ZvStyleIcon::Menu},
};

/// The text of `QColor::name(QColor::HexArgb)`: "#aarrggbb" in lower case.
QString sheetColour(const QColor& colour)
{
    constexpr char digits[] = "0123456789abcdef";
    const QRgb argb = colour.rgba();
    QString text(9, QLatin1Char('#'));
    for (int i = 1; i < text.size(); ++i)
        text[i] = QLatin1Char(digits[(argb >> (32 - 4 * i)) & 0xF]);
    return text;
}

} // namespace

ZvStyle::Impl::Impl(const char* styleName)
    : name(styleName)
    , colours(static_cast<std::size_t>(ZvStyleBrush::TOTAL) + 1)
    , icons(static_cast<std::size_t>(ZvStyleIcon::TOTAL) + 1)
{
    for (std::size_t i = 0; i < colours.size(); ++i)
        colours[i] = ZvNamedColour(impl::name(static_cast<ZvStyleBrush>(i)), QColor());
    for (std::size_t i = 0; i < icons.size(); ++i)
        icons[i] = ZvNamedIcon(impl::name(static_cast<ZvStyleIcon>(i)), ZvString());
    deriveAccent(hostAccent());
}

ZvNamedColour& ZvStyle::Impl::colour(ZvStyleBrush brush)
{
    return colours[static_cast<std::size_t>(brush)];
}

const ZvNamedColour& ZvStyle::Impl::colour(ZvStyleBrush brush) const
{
    return colours[static_cast<std::size_t>(brush)];
}

ZvNamedIcon& ZvStyle::Impl::icon(ZvStyleIcon icon)
{
    return icons[static_cast<std::size_t>(icon)];
}

const ZvNamedIcon& ZvStyle::Impl::icon(ZvStyleIcon icon) const
{
    return icons[static_cast<std::size_t>(icon)];
}

ZvEditorStyle* ZvStyle::Impl::editor(const char* editorName)
{
    return findEditor(editors, editorName);
}

const ZvEditorStyle* ZvStyle::Impl::editor(const char* editorName) const
{
    return findEditor(editors, editorName);
}

void ZvStyle::Impl::deriveAccent(const QColor& accent)
{
    // By contract: darker(100) and lighter(100) change nothing, so the first shades equal the
    // accent.
    colour(ZvStyleBrush::Accent) = accent;
    colour(ZvStyleBrush::AccentD1) = accent.darker(100);
    colour(ZvStyleBrush::AccentD2) = accent.darker(150);
    colour(ZvStyleBrush::AccentD3) = accent.darker(200);
    colour(ZvStyleBrush::AccentL1) = accent.lighter(100);
    colour(ZvStyleBrush::AccentL2) = accent.lighter(150);
    colour(ZvStyleBrush::AccentL3) = accent.lighter(200);
}

QString ZvStyle::Impl::substituteVariables(const QString& text) const
{
    std::vector<impl::variable> variables;
    variables.reserve(std::size(brushVariables) + std::size(iconVariables) + 1);
    for (const BrushVariable& v : brushVariables)
        variables.push_back({QLatin1String(v.name), sheetColour(colour(v.brush))});
    for (const IconVariable& v : iconVariables)
        variables.push_back({QLatin1String(v.name), icon(v.icon).path().toQString()});
    // By contract: the variable is black for the built-in styles, whose brush is named "CommentText",
    // not "Comment".
    const ZvEditorStyle* const testplan = editor("Testplan");
    variables.push_back({QLatin1String("@testplanCommentTextEnabled"),
                         sheetColour(testplan ? testplan->brush("Comment") : QColor())});
    return impl::substitute_variables(text, variables);
}

} // namespace libzvutil
