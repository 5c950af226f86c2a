#include "common/StatusLine.h"

#include <zvutil/ZvStyle.h>

#include <QPainter>

#include <algorithm>

namespace workbench {

StatusLine::StatusLine(QWidget* parent)
    : ZvProgressLineEdit(parent)
{
    setReadOnly(true);
    setFocusPolicy(Qt::ClickFocus);
    setAcceptDrops(false);
    setStyleSheet(
        QStringLiteral("QLineEdit { background: transparent; border: none; padding: 4px 0px; }"));
}

void StatusLine::paintEvent(QPaintEvent* event)
{
    ZvProgressLineEdit::paintEvent(event);
    if (progressMaximum() <= 0 || progressValue() <= 0)
        return;
    constexpr int thickness = 2;
    const double done = std::min(1.0, double(progressValue()) / progressMaximum());
    QRect bar(0, height() - thickness, int(done * width()), thickness);
    if (isRightToLeft())
        bar.moveRight(width() - 1);
    QPainter(this).fillRect(
        bar, libzvutil::ZvStyle::Current().colour(libzvutil::ZvStyleBrush::Accent).qColour());
}

} // namespace workbench
