#pragma once

#include <zvutil/ZvStyleBrush.h>
#include <zvutil/ZvStyleIcon.h>

namespace libzvutil::impl {

/// The name of an enumerator; "UNDEFINED" for any other value.
const char* name(ZvStyleBrush brush);
const char* name(ZvStyleIcon icon);

/// The enumerator for a name in a file, compared byte for byte. `TOTAL` for the accent brushes,
/// which are never read, and for every other text.
ZvStyleBrush brush_from_name(const char* name);
ZvStyleIcon icon_from_name(const char* name);

} // namespace libzvutil::impl
