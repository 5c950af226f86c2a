#pragma once

#include <zvutil/ZvProgressLineEdit.h>

namespace workbench {

/// A line of text that says what is going on, with a bar at its lower edge for the progress.
///
/// The bar has the style's accent colour. The base class paints its own bar into the background,
/// which the styles' sheets override.
class StatusLine : public ZvProgressLineEdit
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace workbench
