#pragma once

namespace libzvutil {

/// The icons of a style. Files know them by these names, style sheets as variables: `@iconClose`.
enum class ZvStyleIcon {
    CheckboxTick,
    CheckboxIndeterminate,
    Close,
    Menu,
    TOTAL ///< an entry of its own, which takes what a file names otherwise
};

} // namespace libzvutil
