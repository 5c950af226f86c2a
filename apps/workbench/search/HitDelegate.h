#pragma once

#include <QString>
#include <QStyledItemDelegate>

namespace workbench {

/// Shows a line with the text that was found emphasised, and shifted so that this text is visible.
class HitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Sets the length of the text that is searched for, in UTF-16 units.
    void setLength(int length);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    int m_length = 0;
};

} // namespace workbench
