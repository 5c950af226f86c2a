#pragma once

/// A kind of content that this library itself puts on the clipboard.
enum class ZvInternalMimeType {
    table = 0 ///< a `ZvTable`, with its cells as they were
};
