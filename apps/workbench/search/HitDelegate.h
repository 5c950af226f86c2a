#pragma once

#include <QString>
#include <QStyledItemDelegate>

namespace workbench {

/// Shows a line with the text that was searched for emphasised, so that it can be seen.
class HitDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// How long the text is that was searched for.
    void setLength(int length);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    int m_length = 0;
};

} // namespace workbench
