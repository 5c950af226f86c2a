#include "search/HitDelegate.h"

#include "files/FileItemDelegate.h"
#include "search/HitsModel.h"

#include <zvutil/ZvStyle.h>

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace workbench {

namespace {

constexpr int margin = 6;

/// Returns a text with a space for each tab and other blank.
QString inOneLine(QString text)
{
    for (QChar& character : text) {
        if (character.isSpace())
            character = QLatin1Char(' ');
    }
    return text;
}

QTextLayout::FormatRange emphasis(int position, int length, bool isSelected)
{
    QTextLayout::FormatRange range;
    range.start = position;
    range.length = length;
    range.format.setFontWeight(QFont::Bold);
    if (!isSelected) {
        QColor background =
            libzvutil::ZvStyle::Current().colour(libzvutil::ZvStyleBrush::Accent).qColour();
        background.setAlphaF(0.3);
        range.format.setBackground(background);
    }
    return range;
}

/// Returns how many pixels the line is shifted to the left, so that the text that was found is
/// within \p room.
double pushed(const QTextLine& line, int position, int length, double room)
{
    const double start = line.cursorToX(position);
    const double end = line.cursorToX(position + length);
    return std::clamp(end - room, 0.0, start);
}

} // namespace

void HitDelegate::setLength(int length)
{
    m_length = length;
}

void HitDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const
{
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    paintItemBackground(*painter, item);

    QTextLayout layout(inOneLine(item.text), item.font, painter->device());
    const int position = index.data(HitsModel::PositionRole).toInt();
    layout.setFormats({emphasis(position, m_length, item.state.testFlag(QStyle::State_Selected))});
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return;
    painter->save();
    const QRect room = item.rect.adjusted(margin, 0, -margin, 0);
    painter->setClipRect(room);
    painter->setPen(itemTextColour(item));
    layout.draw(painter,
                QPointF(room.x() - pushed(line, position, m_length, room.width()),
                        room.y() + (room.height() - line.height()) / 2));
    painter->restore();
}

} // namespace workbench
