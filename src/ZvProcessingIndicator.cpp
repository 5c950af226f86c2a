#include <zvutil/ZvProcessingIndicator.h>

#include "impl/ZvProcessingIndicatorPrivate.h"

#include <QCursor>
#include <QHideEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QShowEvent>

#include <algorithm>

namespace {

constexpr int period = 100; // milliseconds
constexpr int bars = 12;

/// The upright bar above the origin, for a spinner of size \p side.
QRectF upperBar(double side)
{
    const double inner = side * 0.15;
    const double length = side * 0.5 - inner;
    const double width = length * 0.2;
    return QRectF(-width * 0.5, -length - inner, width, length);
}

} // namespace

ZvProcessingIndicator::ZvProcessingIndicator(QWidget* parent)
    : QWidget(parent)
    , d(new ZvProcessingIndicatorPrivate(this))
{
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    setCursor(QCursor(Qt::WaitCursor));
}

ZvProcessingIndicator::~ZvProcessingIndicator() = default;

QSize ZvProcessingIndicator::minimumSizeHint() const
{
    return QSize(16, 16);
}

void ZvProcessingIndicator::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF bar = upperBar(std::min(width(), height()));
    const double radius = bar.width() * 0.5;
    for (int i = 0; i < bars; ++i) {
        QColor colour = d_func()->colour;
        colour.setAlphaF(1.0 - i / double(bars));
        painter.setBrush(QBrush(colour, Qt::SolidPattern));
        painter.save();
        painter.translate(rect().center());
        painter.rotate(d_func()->angle - i * 30.0);
        painter.drawRoundedRect(bar, radius, radius, Qt::AbsoluteSize);
        painter.restore();
    }
}

void ZvProcessingIndicator::showEvent(QShowEvent* event)
{
    d_func()->timer.start(period, d_func());
    QWidget::showEvent(event);
}

void ZvProcessingIndicator::hideEvent(QHideEvent* event)
{
    d_func()->timer.stop();
    QWidget::hideEvent(event);
}

ZvProcessingIndicatorPrivate* ZvProcessingIndicator::d_func()
{
    return d;
}

const ZvProcessingIndicatorPrivate* ZvProcessingIndicator::d_func() const
{
    return d;
}
