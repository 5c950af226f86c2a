#include "schematic/SymbolItem.h"

#include <zvutil/ZvStyle.h>

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QTransform>

#include <utility>

namespace workbench {

namespace {

constexpr double labelGap = 5;

QFont labelFont()
{
    QFont font;
    font.setPixelSize(12);
    return font;
}

} // namespace

SymbolItem::SymbolItem(const Symbol& symbol)
    : GridItem(symbol.id)
    , m_symbol(symbol)
{
    setPos(symbol.position * gridStep);
    setZValue(1);
    layOut();
}

const Symbol& SymbolItem::symbol() const
{
    return m_symbol;
}

void SymbolItem::setSymbol(const Symbol& symbol)
{
    // The mouse may have moved the item, even if the symbol is the same.
    setPos(symbol.position * gridStep);
    if (symbol == m_symbol)
        return;
    prepareGeometryChange();
    m_symbol = symbol;
    layOut();
    update();
}

QPoint SymbolItem::gridPosition() const
{
    return m_symbol.position;
}

QRectF SymbolItem::boundingRect() const
{
    return m_bounds;
}

QPainterPath SymbolItem::shape() const
{
    QPainterPath path;
    path.addRect(m_body.adjusted(-3, -3, 3, 3));
    return path;
}

void SymbolItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* /*option*/,
                       QWidget* /*widget*/)
{
    // The body is filled, or the grid would be visible within it.
    draw(*painter, pen(wireWidth),
         libzvutil::ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled).qColour());
}

void SymbolItem::draw(QPainter& painter, const QPen& pen, const QColor& background) const
{
    const SymbolShape& shape = shapeOf(m_symbol.kind);
    painter.save();
    painter.setPen(pen);
    painter.rotate(m_symbol.rotation);
    painter.setBrush(background);
    painter.drawPath(shape.body);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(shape.lines);
    painter.restore();
    painter.setPen(pen);
    painter.setFont(labelFont());
    for (const Label& label : std::as_const(m_labels))
        painter.drawText(label.area, int(label.alignment | Qt::TextDontClip), label.text);
}

void SymbolItem::layOut()
{
    const SymbolShape& shape = shapeOf(m_symbol.kind);
    const QRectF all = shape.body.boundingRect() | shape.lines.boundingRect();
    m_body = QTransform().rotate(m_symbol.rotation).mapRect(all);
    m_labels = labels();
    m_bounds = m_body;
    for (const Label& label : std::as_const(m_labels))
        m_bounds |= label.area;
    m_bounds.adjust(-2, -2, 2, 2);
}

/// Returns the labels, which stay upright: above and below a wide symbol, to the right of a high
/// one.
QVector<SymbolItem::Label> SymbolItem::labels() const
{
    const QFontMetricsF metrics(labelFont());
    const QRectF& around = m_body;
    const auto box = [&metrics](const QString& text, const QPointF& topLeft) {
        return QRectF(topLeft, QSizeF(metrics.horizontalAdvance(text), metrics.height()));
    };
    const auto centred = [&](const QString& text, double top) {
        QRectF area = box(text, {0, top});
        area.moveLeft(around.center().x() - area.width() / 2);
        return Label{area, Qt::AlignCenter, text};
    };
    const double height = metrics.height();
    if (m_symbol.kind == SymbolKind::Chip)
        return {centred(m_symbol.reference, around.top() - height - 1),
                centred(m_symbol.value, around.center().y() - height / 2)};
    // A ground's reference isn't shown, since nobody wants to read it.
    if (m_symbol.kind == SymbolKind::Ground)
        return {centred(m_symbol.value, around.bottom() + 1)};
    if (around.height() > around.width()) {
        const double left = around.right() + labelGap;
        const double middle = around.center().y();
        return {
            {box(m_symbol.reference, {left, middle - height}), Qt::AlignLeft, m_symbol.reference},
            {box(m_symbol.value, {left, middle}), Qt::AlignLeft, m_symbol.value}};
    }
    return {centred(m_symbol.reference, around.top() - height - 1),
            centred(m_symbol.value, around.bottom() + 1)};
}

} // namespace workbench
