#pragma once

/// A kind of content that this library itself puts on the clipboard.
/// @since 0.1 @ingroup tables
enum class ZvInternalMimeType {
    table = 0 ///< a `ZvTable`, with its cells as they were
};
