#include "schematic/GridItem.h"

#include "schematic/Schematic.h"

#include <zvutil/ZvStyle.h>

#include <QPen>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

int nearestStep(double coordinate)
{
    return static_cast<int>(
        std::clamp(std::round(coordinate / gridStep), double(-farthestStep), double(farthestStep)));
}

} // namespace

GridItem::GridItem(int id)
    : m_id(id)
{
    setFlags(ItemIsSelectable | ItemSendsGeometryChanges);
}

int GridItem::id() const
{
    return m_id;
}

QVariant GridItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    if (change == ItemPositionChange)
        return QPointF(nearestStep(value.toPointF()) * gridStep);
    return QGraphicsItem::itemChange(change, value);
}

QPen GridItem::pen(double width) const
{
    using libzvutil::ZvStyle;
    using libzvutil::ZvStyleBrush;
    const ZvStyleBrush brush = isSelected() ? ZvStyleBrush::Accent : ZvStyleBrush::TextEnabled;
    return QPen(ZvStyle::Current().colour(brush).qColour(), width, Qt::SolidLine, Qt::RoundCap,
                Qt::RoundJoin);
}

QPoint nearestStep(const QPointF& place)
{
    return {nearestStep(place.x()), nearestStep(place.y())};
}

} // namespace workbench
