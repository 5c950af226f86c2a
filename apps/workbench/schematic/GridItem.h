#pragma once

#include <QGraphicsItem>

namespace workbench {

/// Something in a schematic that can be selected and moved, from one point of the grid to another.
class GridItem : public QGraphicsItem
{
public:
    explicit GridItem(int id);

    /// Of what it shows.
    int id() const;

    /// Where it stands, in steps, but while it is being moved.
    virtual QPoint place() const = 0;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

    /// In the style's colour of texts, or in the accent's while it is selected.
    QPen pen(double width) const;

private:
    int m_id;
};

/// The point of the grid that is nearest to a point of the scene, in steps.
QPoint nearestStep(const QPointF& place);

} // namespace workbench
