#include "testplan/PrintedPlan.h"

#include <QFontDatabase>

#include <algorithm>

namespace workbench {

PrintedPlan::PrintedPlan(const TestPlan& plan)
{
    m_model.setPlan(plan);
}

int PrintedPlan::rowCount() const
{
    return m_model.rowCount();
}

int PrintedPlan::columnCount() const
{
    return m_model.columnCount();
}

QString PrintedPlan::text(int row, int column) const
{
    QString text = cellText(m_model.value(row, column));
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.replace(QLatin1Char('\t'), QLatin1Char(' '));
}

PrintedTable::Look PrintedPlan::look(int row, int column) const
{
    switch (m_model.rowKind(row)) {
    case TestPlanModel::RowKind::Disabled:
        return Look::Disabled;
    case TestPlanModel::RowKind::Comment:
        return Look::Comment;
    case TestPlanModel::RowKind::Plain:
        break;
    }
    const bool isPlain =
        m_model.verdict(m_model.index(row, column)) == TestPlanModel::Verdict::Plain;
    return isPlain ? Look::Plain : Look::Strong;
}

bool PrintedPlan::isNumber(int row, int column) const
{
    return m_model.value(row, column).userType() == QMetaType::Double;
}

bool PrintedPlan::isOneCell(int row) const
{
    if (m_model.rowKind(row) != TestPlanModel::RowKind::Comment)
        return false;
    const QVector<CellValue>& cells = m_model.plan().rows[static_cast<std::size_t>(row)].cells;
    return std::none_of(cells.begin() + 1, cells.end(),
                        [](const CellValue& value) { return value.isValid(); });
}

QString PrintedPlan::heading(int column) const
{
    return m_model.plan().headings.at(column);
}

bool PrintedPlan::hasHeadings() const
{
    return true;
}

QFont PrintedPlan::font() const
{
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont);
}

} // namespace workbench
