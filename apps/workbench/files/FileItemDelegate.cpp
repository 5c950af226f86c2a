#include "files/FileItemDelegate.h"

#include "common/readable_colour.h"
#include "common/style_options.h"
#include "files/FilteredFilesModel.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>

namespace workbench {

namespace {

constexpr int margin = 6;
constexpr int gap = 8;
constexpr int least = 40; ///< pixels below which the folder isn't worth showing

bool isSelected(const QStyleOptionViewItem& item)
{
    return item.state.testFlag(QStyle::State_Selected);
}

} // namespace

void FileItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    paintItemBackground(*painter, item);

    const QFontMetrics metrics(item.font);
    const QRect room = item.rect.adjusted(margin, 0, -margin, 0);
    const QString name = metrics.elidedText(item.text, Qt::ElideMiddle, room.width());
    const int nameWidth = metrics.horizontalAdvance(name);
    painter->save();
    painter->setFont(item.font);
    painter->setPen(itemTextColour(item));
    painter->drawText(QStyle::visualRect(item.direction, room,
                                         QRect(room.x(), room.y(), nameWidth + 1, room.height())),
                      Qt::AlignVCenter | Qt::TextSingleLine, name);
    const int folderWidth = room.width() - nameWidth - gap;
    if (folderWidth >= least) {
        const QString folder = metrics.elidedText(
            index.data(FilteredFilesModel::FolderRole).toString(), Qt::ElideMiddle, folderWidth);
        const QRect rest(room.right() + 1 - folderWidth, room.y(), folderWidth, room.height());
        painter->setPen(itemSideTextColour(item));
        painter->drawText(QStyle::visualRect(item.direction, room, rest),
                          int(QStyle::visualAlignment(item.direction, Qt::AlignLeft))
                              | Qt::AlignVCenter | Qt::TextSingleLine,
                          folder);
    }
    painter->restore();
}

QSize FileItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& /*index*/) const
{
    constexpr int spacing = 8;
    return {16 * margin, QFontMetrics(option.font).height() + spacing};
}

void paintItemBackground(QPainter& painter, const QStyleOptionViewItem& item)
{
    const QStyle* const style = item.widget ? item.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, &painter, item.widget);
}

QColor itemTextColour(const QStyleOptionViewItem& item)
{
    return isSelected(item) ? item.palette.color(QPalette::HighlightedText)
                            : styleColour(libzvutil::ZvStyleBrush::TextEnabled);
}

QColor itemSideTextColour(const QStyleOptionViewItem& item)
{
    if (!isSelected(item))
        return pageTextColour(styleColour(libzvutil::ZvStyleBrush::TextDisabled));
    QColor colour = itemTextColour(item);
    colour.setAlphaF(0.7);
    return readable(colour, item.palette.color(QPalette::Highlight));
}

} // namespace workbench
