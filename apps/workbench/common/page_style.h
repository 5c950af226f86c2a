#pragma once

#include <QString>

class QWidget;

namespace workbench {

/// Returns the family of the system's fixed-pitch font.
QString fixedPitchFamily();

/// Sets a style sheet on \p widget that selects a fixed-pitch font, whatever the application's
/// sheet says.
void setFixedPitch(QWidget& widget);

/// Sets a style sheet on \p widget that selects a fixed-pitch font and the current style's
/// background of editors, and follows changes of the style. The background stays while the widget
/// has the focus: the colour for a focused line would be too dark for a whole page.
void makePage(QWidget& widget);

/// Shows the text of a page in a size that replaces the style's, also when the style changes; with 0 in the
/// style's size.
void setPageTextSize(QWidget& page, double points);

} // namespace workbench
