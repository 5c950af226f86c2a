#pragma once

#include <QStyledItemDelegate>

namespace workbench {

/// Shows a file in one line: its name, and behind that, less prominent, the folder that it is in
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

/// Paints what is behind an item's text, selected or not.
void paintItemBackground(QPainter& painter, const QStyleOptionViewItem& item);

/// The colour for the text of an item, and for the less important text beside it.
QColor itemTextColour(const QStyleOptionViewItem& item);
QColor itemSideTextColour(const QStyleOptionViewItem& item);

} // namespace workbench
