#include "testplan/TestPlanDelegate.h"

#include "common/readable_colour.h"
#include "common/style_options.h"

#include "testplan/TestPlanModel.h"

#include <zvutil/ZvStyle.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QWidget>

namespace workbench {

namespace {

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;

QColor planColour(const char* brush)
{
    return ZvStyle::Current().editorColour("Testplan", brush);
}

void setTextColour(QStyleOptionViewItem& option, const QColor& colour)
{
    const QColor background = option.backgroundBrush.style() == Qt::NoBrush
        ? styleColour(ZvStyleBrush::EditorEnabled)
        : option.backgroundBrush.color();
    option.palette.setColor(QPalette::Text, readable(colour, background));
}

QPoint stepOf(const QKeyEvent& event)
{
    const bool isBack = event.modifiers() & Qt::ShiftModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return {0, isBack ? -1 : 1};
    case Qt::Key_Tab:
        return {1, 0};
    case Qt::Key_Backtab:
        return {-1, 0};
    default:
        return {};
    }
}

} // namespace

TestPlanDelegate::TestPlanDelegate(const TestPlanModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{
}

void TestPlanDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const TestPlanModel::Verdict verdict = m_model.verdict(index);
    if (verdict == TestPlanModel::Verdict::Plain)
        return;
    const bool isError = verdict == TestPlanModel::Verdict::Error;
    painter->save();
    painter->setPen(QPen(planColour(isError ? "ErrorBorder" : "WarningBorder"), 2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
}

QWidget* TestPlanDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                        const QModelIndex& index) const
{
    auto* const editor = new QLineEdit(parent);
    editor->setAccessibleName(tr("Cell %1").arg(cellName(index.row(), index.column())));
    // The padding is less than that of other fields, or the text wouldn't fit into the cell.
    editor->setStyleSheet(
        QStringLiteral("padding: 0 1px; font-size: 9pt; font-family: \"Segoe UI\";"));
    return editor;
}

void TestPlanDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                    const QModelIndex& index) const
{
    model->setData(index, static_cast<const QLineEdit*>(editor)->text(), Qt::EditRole);
}

void TestPlanDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                            const QModelIndex& /*index*/) const
{
    editor->setGeometry(option.rect);
}

bool TestPlanDelegate::eventFilter(QObject* editor, QEvent* event)
{
    const QPoint step =
        event->type() == QEvent::KeyPress ? stepOf(*static_cast<QKeyEvent*>(event)) : QPoint();
    if (step.isNull())
        return QStyledItemDelegate::eventFilter(editor, event);
    auto* const widget = static_cast<QWidget*>(editor);
    Q_EMIT commitData(widget);
    Q_EMIT closeEditor(widget);
    Q_EMIT leftTowards(step.x(), step.y());
    return true;
}

void TestPlanDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->backgroundBrush = ZvStyle::Current().colour(ZvStyleBrush::EditorEnabled).qColour();
    switch (m_model.rowKind(index.row())) {
    case TestPlanModel::RowKind::Disabled:
        option->font.setStrikeOut(true);
        setTextColour(*option, planColour("DisabledText"));
        return;
    case TestPlanModel::RowKind::Comment:
        setTextColour(*option, planColour("CommentText"));
        return;
    case TestPlanModel::RowKind::Plain:
        break;
    }
    const TestPlanModel::Verdict verdict = m_model.verdict(index);
    if (verdict == TestPlanModel::Verdict::Plain)
        return;
    const bool isError = verdict == TestPlanModel::Verdict::Error;
    option->backgroundBrush = planColour(isError ? "ErrorBackground" : "WarningBackground");
    setTextColour(*option, planColour(isError ? "ErrorText" : "WarningText"));
}

} // namespace workbench
