#pragma once

namespace libzvutil {

/// The icons of a style. Files name them as here, style sheets use them as variables: `@iconClose`.
/// @since 0.1 @ingroup styles
enum class ZvStyleIcon {
    CheckboxTick, ///< mark of a box that is checked
    CheckboxIndeterminate, ///< mark of a box that is partially checked
    Close, ///< button that closes a tab or a dock
    Menu, ///< arrow that opens a menu or list
    TOTAL ///< an entry of its own, for entries of files with any other name
};

} // namespace libzvutil
