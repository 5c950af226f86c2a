#pragma once

#include "schematic/GridItem.h"
#include "schematic/Schematic.h"

namespace workbench {

/// A wire. Its place is the scene's origin but while it is being moved.
class WireItem : public GridItem
{
public:
    explicit WireItem(const Wire& wire);

    const Wire& wire() const;
    /// One with the same id.
    void setWire(const Wire& wire);

    QPoint place() const override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    QPainterPath line() const;

    Wire m_wire;
};

} // namespace workbench
