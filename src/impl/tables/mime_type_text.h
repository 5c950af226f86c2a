#pragma once

#include <zvutil/mime_type.h>

#include <QString>

namespace zvutil::impl {

/// The name of a format in a `QMimeData`; "unknown" for a value outside the enumeration.
QString mime_type_text(mime_type type);

} // namespace zvutil::impl
