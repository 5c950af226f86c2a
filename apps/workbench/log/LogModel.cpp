#include "log/LogModel.h"

#include "common/style_options.h"
#include "common/tool_tip.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/details/log_level.h>

#include <QColor>

#include <algorithm>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using zvutil::logging::host::Record;

namespace workbench {

namespace {

QString levelText(int level)
{
    const QString texts[] = {LogModel::tr("Trace"), LogModel::tr("Progress"),
                             LogModel::tr("Info"),  LogModel::tr("Warning"),
                             LogModel::tr("Error"), LogModel::tr("Critical")};
    return texts[std::clamp(level, 0, int(std::size(texts)) - 1)];
}

QColor levelColour(int level)
{
    const ZvStyle& style = ZvStyle::Current();
    if (level >= zvutil::details::log_error)
        return pageTextColour(style.editorColour("Testplan", "ErrorBorder"));
    if (level == zvutil::details::log_warning)
        return pageTextColour(style.editorColour("Testplan", "WarningBorder"));
    const ZvStyleBrush brush = level >= zvutil::details::log_information
        ? ZvStyleBrush::TextEnabled
        : ZvStyleBrush::TextDisabled;
    return pageTextColour(style.colour(brush));
}

} // namespace

LogModel::LogModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void LogModel::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

void LogModel::append(const std::vector<Record>& records)
{
    const int added = std::min(int(records.size()), maxLines);
    const int present = int(m_lines.size());
    const int removed = std::max(present + added - maxLines, 0);
    if (removed > 0) {
        beginRemoveRows(QModelIndex(), 0, removed - 1);
        m_lines.erase(m_lines.begin(), m_lines.begin() + removed);
        endRemoveRows();
    }
    if (added == 0)
        return;
    beginInsertRows(QModelIndex(), present - removed, present - removed + added - 1);
    for (auto record = records.end() - added; record != records.end(); ++record)
        m_lines.push_back({record->level, QString::fromStdString(record->category),
                           QString::fromStdString(record->text)});
    endInsertRows();
}

void LogModel::recolour()
{
    if (!m_lines.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1),
                           {Qt::ForegroundRole});
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

int LogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Line& line = m_lines[std::size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        // A row shows its text in one line; the tool tip keeps the line breaks.
        return text(line, index.column()).simplified();
    case Qt::ToolTipRole:
        return toolTipOf(text(line, index.column()));
    case Qt::ForegroundRole:
        return levelColour(line.level);
    case LevelRole:
        return line.level;
    default:
        return {};
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QStringList titles = {tr("Level"), tr("Source"), tr("Message")};
    return titles.value(section);
}

QString LogModel::text(const Line& line, int column) const
{
    switch (column) {
    case LevelColumn:
        return levelText(line.level);
    case CategoryColumn:
        return line.category;
    default:
        return line.text;
    }
}

} // namespace workbench
