#pragma once

#include <QString>
#include <QTest>

/// What the built-in style data hold, written down a second time.
namespace zvtest {

struct BuiltInBrush
{
    const char* name;
    const char* light;
    const char* dark;
};

constexpr BuiltInBrush builtInBrushes[] = {
    {"Panel", "#f0f0f0", "#202020"},
    {"EditorEnabled", "#ffffff", "#282828"},
    {"EditorDisabled", "#ffffff", "#282828"},
    {"EditorFocus", "#cccccc", "#202020"},
    {"EditorHover", "#ffffff", "#323232"},
    {"InteractiveEnabled", "#ffffff", "#303030"},
    {"InteractiveHover", "#ffffff", "#3c3c3c"},
    {"InteractivePressed", "#cccccc", "#262626"},
    {"BorderEditorEnabled", "#929292", "#464646"},
    {"BorderEditorDisabled", "ffffff", "#202020"},
    {"BorderEditorFocus", "#929292", "#464646"},
    {"BorderEditorHover", "#757575", "#575757"},
    {"BorderInteractiveEnabled", "#929292", "#545454"},
    {"BorderInteractiveDisabled", "#ffffff", "#262626"},
    {"BorderInteractiveHover", "#757575", "#696969"},
    {"BorderInteractivePressed", "#b6b6b6", "#434343"},
    {"TextEnabled", "#000000", "#ffffff"},
    {"TextDisabled", "#61000000", "#61ffffff"},
    {"TextHover", "#99000000", "99ffffff"},
};

struct BuiltInIcon
{
    const char* name;
    const char* light;
    const char* dark;
};

constexpr BuiltInIcon builtInIcons[] = {
    {"CheckboxTick", ":/libzvutil/style/tick-black.svg", ":/libzvutil/style/tick-black.svg"},
    {"CheckboxIndeterminate", ":/libzvutil/style/indeterminate-black.svg",
     ":/libzvutil/style/indeterminate-black.svg"},
    {"Close", ":/libzvutil/style/cross-black.svg", ":/libzvutil/style/cross-white.svg"},
    {"Menu", ":/libzvutil/style/menu-black.svg", ":/libzvutil/style/menu-white.svg"},
};

struct NamedText
{
    const char* name;
    const char* colour;
};

/// The brushes of the editor "Testplan", in both styles.
constexpr NamedText builtInEditorBrushes[] = {
    {"CommentText", "#00CC6A"},   {"DisabledText", "#888888"}, {"ErrorBackground", "#E74856"},
    {"ErrorBorder", "#FF4343"},   {"ErrorText", "#000000"},    {"WarningBackground", "#F7630C"},
    {"WarningBorder", "#CA5010"}, {"WarningText", "#000000"},
};

constexpr NamedText builtInAccents[] = {
    {"Yellow Gold", "#FFB900"},
    {"Gold", "#FF8C00"},
    {"Orange Bright", "#F7630C"},
    {"Orange Dark", "#CA5010"},
    {"Rust", "#DA3B01"},
    {"Pale Rust", "#EF6950"},
    {"Brick Red", "#D13438"},
    {"Mod Red", "#FF4343"},
    {"Pale Red", "#E74856"},
    {"Red", "#E81123"},
    {"Rose Bright", "#EA005E"},
    {"Rose", "#C30052"},
    {"Plum Light", "#E3008C"},
    {"Plum", "#BF0077"},
    {"Orchid Light", "#C239B3"},
    {"Orchid", "#9A0089"},
    {"Default Blue", "#0078D7"},
    {"Navy Blue", "#0063B1"},
    {"Purple Shadow", "#8E8CD8"},
    {"Purple Shadow Dark", "#6B69D6"},
    {"Iris Pastel", "#8764B8"},
    {"Iris Spring", "#744DA9"},
    {"Violet Red Light", "#B146C2"},
    {"Violet Red", "#881798"},
    {"Cool Blue Bright", "#0099BC"},
    {"Cool Blue", "#2D7D9A"},
    {"Seafoam", "#00B7C3"},
    {"Seafoam Team", "#038387"},
    {"Mint Light", "#00B294"},
    {"Mint Dark", "#018574"},
    {"Turf Green", "#00CC6A"},
    {"Sport Green", "#10893E"},
    {"Gray", "#7A7574"},
    {"Gray Brown", "#5D5A58"},
    {"Steel Blue", "#68768A"},
    {"Metal Blue", "#515C6B"},
    {"Pale Moss", "#567C73"},
    {"Moss", "#486860"},
    {"Meadow Green", "#498205"},
    {"Green", "#107C10"},
    {"Overcast", "#767676"},
    {"Storm", "#4C4A48"},
    {"Blue Gray", "#69797E"},
    {"Gray Dark", "#4A5459"},
    {"Liddy Green", "#647C64"},
    {"Sage", "#525E54"},
    {"Camouflage Desert", "#847545"},
    {"Camouflage", "#7E735F"},
};

/// One row for each built-in style, of which the column "style" has the name.
inline void addStyleRows()
{
    QTest::addColumn<QString>("style");
    for (const char* const name : {"Light", "Dark"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

} // namespace zvtest
