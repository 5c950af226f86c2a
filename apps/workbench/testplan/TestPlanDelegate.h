#pragma once

#include <QStyledItemDelegate>

namespace workbench {

class TestPlanModel;

/// Paints the cells of a test plan in the current style's colours for test plans, and ends typing
/// by the keys that spreadsheets use.
class TestPlanDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    TestPlanDelegate(const TestPlanModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

Q_SIGNALS:
    /// Emitted when a key has ended the typing and moves on by so many columns and rows.
    void leftTowards(int columns, int rows);

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const TestPlanModel& m_model;
};

} // namespace workbench
