#pragma once

#include <QGraphicsItem>

namespace workbench {

/// The width of lines in units of the scene: as pixels, it is sharp on the grid at full size.
constexpr double wireWidth = 2;

/// An item of a schematic that the user can select and move from one point of the grid to another.
class GridItem : public QGraphicsItem
{
public:
    explicit GridItem(int id);

    /// Returns the id of the symbol or wire that the item shows.
    int id() const;

    /// Returns the position of the item in the schematic, in steps. While the mouse moves the item,
    /// this is the position where the move began.
    virtual QPoint gridPosition() const = 0;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

    /// Returns a pen in the style's colour for text, or in the accent colour while the item is
    /// selected.
    QPen pen(double width) const;

private:
    int m_id;
};

/// Returns the point of the grid that is nearest to a point of the scene, in steps.
QPoint nearestStep(const QPointF& position);

} // namespace workbench
