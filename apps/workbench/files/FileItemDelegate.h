#pragma once

#include <QStyledItemDelegate>

namespace workbench {

/// Shows a file in one line: its name, then, less prominently, the folder that contains it
/// (`FilteredFilesModel::FolderRole`), elided in the middle.
class FileItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// Paints the background of an item, selected or not.
void paintItemBackground(QPainter& painter, const QStyleOptionViewItem& item);

/// Returns the colour for the text of an item, or for the less important text beside it.
QColor itemTextColour(const QStyleOptionViewItem& item);
QColor itemSideTextColour(const QStyleOptionViewItem& item);

} // namespace workbench
