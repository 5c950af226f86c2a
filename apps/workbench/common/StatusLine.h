#pragma once

#include <zvutil/ZvProgressLineEdit.h>

namespace workbench {

/// A line that tells what is going on, with a bar at its lower edge for how far that is.
///
/// The bar is of the style's accent. The base class's own is in the background, which the styles' sheets
/// overrule.
class StatusLine : public ZvProgressLineEdit
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace workbench
