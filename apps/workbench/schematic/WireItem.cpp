#include "schematic/WireItem.h"

#include <QPainter>
#include <QPainterPathStroker>

namespace workbench {

namespace {

constexpr double grabWidth = 8;
constexpr double junctionRadius = 3.5;

} // namespace

WireItem::WireItem(const Wire& wire)
    : GridItem(wire.id)
    , m_wire(wire)
{
}

const Wire& WireItem::wire() const
{
    return m_wire;
}

void WireItem::setWire(const Wire& wire)
{
    // The mouse may have moved the item, even if the wire is the same.
    setPos(0, 0);
    if (wire.points == m_wire.points)
        return;
    prepareGeometryChange();
    m_wire = wire;
    update();
}

QPoint WireItem::gridPosition() const
{
    return {};
}

QRectF WireItem::boundingRect() const
{
    const double margin = grabWidth / 2;
    return line().boundingRect().adjusted(-margin, -margin, margin, margin);
}

QPainterPath WireItem::shape() const
{
    QPainterPathStroker stroker;
    stroker.setWidth(grabWidth);
    return stroker.createStroke(line());
}

void WireItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* /*option*/,
                     QWidget* /*widget*/)
{
    draw(*painter, pen(wireWidth));
}

void WireItem::draw(QPainter& painter, const QPen& pen) const
{
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(line());
}

QPainterPath WireItem::line() const
{
    QPainterPath path(m_wire.points.first() * gridStep);
    for (const QPoint& point : m_wire.points)
        path.lineTo(point * gridStep);
    return path;
}

void paintJunction(QPainter& painter, const QPoint& junction, const QColor& colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(junction * gridStep), junctionRadius, junctionRadius);
}

} // namespace workbench
