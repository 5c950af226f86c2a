#pragma once

/// The place of a window when it is first shown.
/// @since 0.1 @ingroup host
enum class DockLocationPreference {
    Documents, ///< as a tab among the documents
    Left, ///< at the left side
    Right, ///< at the right side
    Top, ///< above the documents
    Bottom, ///< below the documents
    Floating ///< as a window of its own
};
