#include "files/FilteredFilesModel.h"

#include "common/tool_tip.h"
#include "files/NamePattern.h"

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
