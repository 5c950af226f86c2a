#pragma once

/// Where a window would like to stand when it is first shown.
enum class DockLocationPreference {
    Documents, ///< as a tab among the documents
    Left,
    Right,
    Top,
    Bottom,
    Floating ///< as a window of its own
};
