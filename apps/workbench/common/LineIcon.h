#pragma once

#include <QIcon>
#include <QPainterPath>

namespace workbench {

/// An icon of lines, in the current style's colour of texts whenever it is shown; in the accent's
/// colours while its action is checked. \p lines is drawn in a square of 24 by 24.
QIcon lineIcon(const QPainterPath& lines);

} // namespace workbench
