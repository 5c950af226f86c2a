#include "search/HitsModel.h"

#include "common/tool_tip.h"
#include "files/FilteredFilesModel.h"
#include "files/NamePattern.h"

namespace workbench {

HitsModel::HitsModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void HitsModel::clear()
{
    beginResetModel();
    m_hits.clear();
    m_fileCount = 0;
    endResetModel();
}

void HitsModel::append(const QVector<SearchHit>& hits)
{
    if (hits.isEmpty())
        return;
    beginInsertRows(QModelIndex(), m_hits.size(), m_hits.size() + hits.size() - 1);
    for (const SearchHit& hit : hits) {
        // The hits of a file arrive one after the other, so a new name means one file more.
        if (m_hits.isEmpty() || m_hits.last().file != hit.file)
            ++m_fileCount;
        m_hits.append(hit);
    }
    endInsertRows();
}

const SearchHit& HitsModel::hit(int row) const
{
    return m_hits.at(row);
}

int HitsModel::fileCount() const
{
    return m_fileCount;
}

int HitsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_hits.size();
}

int HitsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant HitsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const SearchHit& hit = m_hits.at(index.row());
    if (role == Qt::ToolTipRole)
        return toolTipOf(index.column() == TextColumn ? hit.line.text : hit.file);
    if (role == FilteredFilesModel::FolderRole)
        return folderOf(hit.file).toString();
    if (role == PositionRole)
        return hit.line.position;
    if (role == Qt::TextAlignmentRole && index.column() == LineColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case FileColumn:
        return fileNameOf(hit.file).toString();
    case LineColumn:
        return hit.line.number;
    default:
        return hit.line.text;
    }
}

QVariant HitsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole && section == LineColumn)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QStringList titles = {tr("File"), tr("Line"), tr("Text")};
    return titles.value(section);
}

} // namespace workbench
