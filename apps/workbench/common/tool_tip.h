#pragma once

#include <QString>

namespace workbench {

/// Returns a tool tip that shows \p text literally, even if Qt would take it for HTML.
QString toolTipOf(const QString& text);

} // namespace workbench
