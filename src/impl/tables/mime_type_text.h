#pragma once

#include <zvutil/mime_type.h>

#include <QString>

namespace zvutil::impl {

/// The name of a format on a `QMimeData`; "unknown" for a value that is none.
QString mime_type_text(mime_type type);

} // namespace zvutil::impl
