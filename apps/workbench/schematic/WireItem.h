#pragma once

#include "schematic/GridItem.h"
#include "schematic/Schematic.h"

namespace workbench {

/// Shows a wire. The item is at the scene's origin, except while the mouse moves it.
class WireItem : public GridItem
{
public:
    explicit WireItem(const Wire& wire);

    const Wire& wire() const;
    /// Shows \p wire, which must have the same id.
    void setWire(const Wire& wire);

    QPoint gridPosition() const override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    /// Paints the wire alone, as it looks with \p pen.
    void draw(QPainter& painter, const QPen& pen) const;

private:
    QPainterPath line() const;

    Wire m_wire;
};

/// Paints the dot of a junction, in units of the scene.
void paintJunction(QPainter& painter, const QPoint& junction, const QColor& colour);

} // namespace workbench
