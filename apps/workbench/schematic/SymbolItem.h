#pragma once

#include "schematic/GridItem.h"
#include "schematic/Schematic.h"

namespace workbench {

/// Shows a symbol with its reference and value.
class SymbolItem : public GridItem
{
public:
    explicit SymbolItem(const Symbol& symbol);

    const Symbol& symbol() const;
    /// Shows \p symbol, which must have the same id.
    void setSymbol(const Symbol& symbol);

    QPoint gridPosition() const override;
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;
    /// Paints the symbol alone around the origin, as it looks with \p pen. The body is filled with \p background.
    void draw(QPainter& painter, const QPen& pen, const QColor& background) const;

private:
    struct Label
    {
        QRectF area;
        Qt::Alignment alignment;
        QString text;
    };

    void layOut();
    QVector<Label> labels() const;

    Symbol m_symbol;
    // The view asks for these at every move of the mouse, so they are computed only once per
    // symbol.
    QRectF m_body;
    QVector<Label> m_labels;
    QRectF m_bounds;
};

} // namespace workbench
