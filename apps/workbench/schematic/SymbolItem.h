#pragma once

#include "schematic/GridItem.h"
#include "schematic/Schematic.h"

namespace workbench {

/// A symbol with its reference and value.
class SymbolItem : public GridItem
{
public:
    explicit SymbolItem(const Symbol& symbol);

    const Symbol& symbol() const;
    /// One with the same id.
    void setSymbol(const Symbol& symbol);

    QPoint place() const override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    struct Label
    {
        QRectF place;
        Qt::Alignment alignment;
        QString text;
    };

    void layOut();
    QVector<Label> labels() const;

    Symbol m_symbol;
    // What the view asks for at every move of the mouse.
    QRectF m_body;
    QVector<Label> m_labels;
    QRectF m_bounds;
};

} // namespace workbench
