#pragma once

class QWidget;

namespace workbench {

/// Has \p widget show a font of fixed pitch, whatever the style sheet says.
void setFixedPitch(QWidget& widget);

/// The same, and the background that editors have in the current style, also while it has the focus:
/// what suits a line is too dark for a whole page. Follows changes of the style.
void makePage(QWidget& widget);

} // namespace workbench
