#include "log/LogFilter.h"

#include "log/LogModel.h"

namespace workbench {

void LogFilter::setLeastLevel(int level)
{
    m_leastLevel = level;
    invalidateFilter();
}

void LogFilter::setText(const QString& text)
{
    m_text = text;
    invalidateFilter();
}

bool LogFilter::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    const QModelIndex index = sourceModel()->index(row, LogModel::TextColumn, parent);
    if (index.data(LogModel::LevelRole).toInt() < m_leastLevel)
        return false;
    const QModelIndex category = index.siblingAtColumn(LogModel::CategoryColumn);
    return m_text.isEmpty()
        || index.data(Qt::ToolTipRole).toString().contains(m_text, Qt::CaseInsensitive)
        || category.data().toString().contains(m_text, Qt::CaseInsensitive);
}

} // namespace workbench
