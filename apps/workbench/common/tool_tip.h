#pragma once

#include <QString>

namespace workbench {

/// A tool tip that shows \p text as it is, also one that Qt would take for HTML.
QString toolTipOf(const QString& text);

} // namespace workbench
