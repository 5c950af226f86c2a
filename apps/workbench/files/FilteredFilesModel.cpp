#include "files/FilteredFilesModel.h"

#include "common/tool_tip.h"
#include "files/NamePattern.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace workbench {

FilteredFilesModel::FilteredFilesModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

void FilteredFilesModel::setSource(QAbstractItemModel* source)
{
    clear();
    m_source = source;
}

void FilteredFilesModel::clear()
{
    if (m_rows.empty())
        return;
    beginResetModel();
    m_rows.clear();
    m_rows.shrink_to_fit();
    endResetModel();
}

void FilteredFilesModel::append(const std::vector<int>& sourceRows)
{
    if (sourceRows.empty())
        return;
    const int first = int(m_rows.size());
    beginInsertRows(QModelIndex(), first, first + int(sourceRows.size()) - 1);
    m_rows.insert(m_rows.end(), sourceRows.begin(), sourceRows.end());
    endInsertRows();
}

void FilteredFilesModel::arrange(const std::vector<int>& positions)
{
    std::vector<int> order = positions;
    removeOthers(order);
    if (std::is_sorted(order.begin(), order.end()))
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    std::vector<int> rows(order.size());
    std::vector<int> newPositions(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        rows[i] = m_rows[std::size_t(order[i])];
        newPositions[std::size_t(order[i])] = int(i);
    }
    m_rows = std::move(rows);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& index : before)
        after.append(this->index(newPositions[std::size_t(index.row())]));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void FilteredFilesModel::arrangeAsFound()
{
    std::vector<int> positions(m_rows.size());
    std::iota(positions.begin(), positions.end(), 0);
    std::sort(positions.begin(), positions.end(), [this](int first, int second) {
        return m_rows[std::size_t(first)] < m_rows[std::size_t(second)];
    });
    arrange(positions);
}

/// Removes the rows that aren't among \p positions, which then count without them.
void FilteredFilesModel::removeOthers(std::vector<int>& positions)
{
    std::vector<int> newPositions(m_rows.size(), -1);
    for (const int position : positions)
        newPositions[std::size_t(position)] = position;
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (newPositions[std::size_t(row)] >= 0)
            continue;
        beginRemoveRows(QModelIndex(), row, row);
        m_rows.erase(m_rows.begin() + row);
        endRemoveRows();
    }
    int next = 0;
    for (int& position : newPositions) {
        if (position >= 0)
            position = next++;
    }
    for (int& position : positions)
        position = newPositions[std::size_t(position)];
}

QStringList FilteredFilesModel::paths() const
{
    QStringList paths;
    paths.reserve(rowCount());
    for (int row = 0; row < rowCount(); ++row)
        paths.append(path(index(row)));
    return paths;
}

QString FilteredFilesModel::path(const QModelIndex& index) const
{
    if (!m_source || index.row() < 0 || index.row() >= rowCount())
        return {};
    const int row = m_rows[std::size_t(index.row())];
    return m_source->data(m_source->index(row, 0)).toString();
}

int FilteredFilesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant FilteredFilesModel::data(const QModelIndex& index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return fileNameOf(path(index)).toString();
    case Qt::ToolTipRole:
        return toolTipOf(path(index));
    case PathRole:
        return path(index);
    case FolderRole:
        return folderOf(path(index)).toString();
    default:
        return {};
    }
}

} // namespace workbench
