#pragma once

#include <QIcon>
#include <QPainterPath>

namespace workbench {

/// Returns an icon of \p lines, which are drawn in a square of 24 by 24. Whenever it is painted, it
/// takes the current style's colour for text, or the accent's colours while its action is checked.
QIcon lineIcon(const QPainterPath& lines);

} // namespace workbench
