#pragma once

namespace libzvutil {

/// The colours of a style. Files name them as here, style sheets use them as variables: `@panel`.
/// @since 0.1 @ingroup styles
enum class ZvStyleBrush {
    Panel, ///< background of windows and panels
    EditorEnabled, ///< background of editable fields
    EditorDisabled, ///< the same where they are disabled
    EditorFocus, ///< the same with the keyboard focus
    EditorHover, ///< the same under the mouse pointer
    InteractiveEnabled, ///< background of controls, such as buttons
    InteractiveHover, ///< the same under the mouse pointer
    InteractivePressed, ///< the same while pressed
    BorderEditorEnabled, ///< border of editable fields
    BorderEditorDisabled, ///< the same where they are disabled
    BorderEditorFocus, ///< the same with the keyboard focus
    BorderEditorHover, ///< the same under the mouse pointer
    BorderInteractiveEnabled, ///< border of controls
    BorderInteractiveDisabled, ///< the same where they are disabled
    BorderInteractiveHover, ///< the same under the mouse pointer
    BorderInteractivePressed, ///< the same while pressed
    Accent, ///< this and its shades come from a host option and are not read from files
    AccentL1, ///< darkest of the light shades: the accent itself
    AccentL2, ///< next lighter shade
    AccentL3, ///< lightest shade
    AccentD1, ///< lightest of the dark shades: the accent itself
    AccentD2, ///< next darker shade
    AccentD3, ///< darkest shade
    AccentForeground, ///< text on the accent
    TextEnabled, ///< text
    TextDisabled, ///< text of what is disabled
    TextHover, ///< text under the mouse pointer
    TOTAL ///< an entry of its own, for entries of files with any other name
};

} // namespace libzvutil
