#pragma once

namespace zvutil {

/// A format of clipboard content.
/// @since 0.1 @ingroup tables
enum class mime_type {
    csv = 0, ///< "text/csv"
    xml_spreadsheet = 1, ///< a name only: such content is neither written nor read
    text = 2, ///< "text/plain"
    windows_csv = 3 ///< the format "Csv" of Windows, as Qt names it
};

} // namespace zvutil
