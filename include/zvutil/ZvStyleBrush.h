#pragma once

namespace libzvutil {

/// The colours of a style. Files know them by these names, style sheets as variables: `@panel`.
enum class ZvStyleBrush {
    Panel,
    EditorEnabled,
    EditorDisabled,
    EditorFocus,
    EditorHover,
    InteractiveEnabled,
    InteractiveHover,
    InteractivePressed,
    BorderEditorEnabled,
    BorderEditorDisabled,
    BorderEditorFocus,
    BorderEditorHover,
    BorderInteractiveEnabled,
    BorderInteractiveDisabled,
    BorderInteractiveHover,
    BorderInteractivePressed,
    Accent, ///< this and its shades come from a host option and are not read from files
    AccentL1,
    AccentL2,
    AccentL3,
    AccentD1,
    AccentD2,
    AccentD3,
    AccentForeground,
    TextEnabled,
    TextDisabled,
    TextHover,
    TOTAL ///< an entry of its own, which takes what a file names otherwise
};

} // namespace libzvutil
