#include "testplan/TestPlanModel.h"

#include "testplan/TestPlanClipboard.h"

#include <QUndoCommand>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <utility>

namespace workbench {

namespace {

class Edit : public QUndoCommand
{
public:
    Edit(const QString& text, std::function<void()> redo, std::function<void()> undo)
        : QUndoCommand(text)
        , m_redo(std::move(redo))
        , m_undo(std::move(undo))
    {
    }

    void redo() override { m_redo(); }
    void undo() override { m_undo(); }

private:
    std::function<void()> m_redo;
    std::function<void()> m_undo;
};

/// Moves a part of a sequence in front of the element \p destination, which lies outside of the
/// part.
template <typename Iterator>
void shift(Iterator begin, int first, int count, int destination)
{
    if (destination > first)
        std::rotate(begin + first, begin + first + count, begin + destination);
    else
        std::rotate(begin + destination, begin + first, begin + first + count);
}

/// Returns how to move a part back that has been moved: its place and destination.
std::pair<int, int> wayBack(int first, int count, int destination)
{
    return destination > first ? std::pair(destination - count, first)
                               : std::pair(destination, first + count);
}

bool isMove(int first, int count, int destination, int all)
{
    return first >= 0 && count > 0 && first + count <= all && destination >= 0 && destination <= all
        && (destination < first || destination > first + count);
}

/// Returns whether two cells have the same content. `QVariant` finds the number 5 and the text "5"
/// equal.
bool isSame(const CellValue& a, const CellValue& b)
{
    return a.userType() == b.userType() && cellText(a) == cellText(b);
}

bool isOneOf(const QString& text, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(), [&text](const char* word) {
        return text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    });
}

} // namespace

TestPlanModel::TestPlanModel(QObject* parent)
    : QAbstractTableModel(parent)
    , m_plan(TestPlan::fresh())
{
    headingsChanged();
}

const TestPlan& TestPlanModel::plan() const
{
    return m_plan;
}

void TestPlanModel::setPlan(TestPlan plan)
{
    m_undoStack.clear();
    beginResetModel();
    m_plan = std::move(plan);
    headingsChanged();
    endResetModel();
}

QUndoStack& TestPlanModel::undoStack()
{
    return m_undoStack;
}

TestPlanModel::RowKind TestPlanModel::rowKind(int row) const
{
    const TestPlanRow& plan = m_plan.rows[static_cast<std::size_t>(row)];
    if (plan.isDisabled)
        return RowKind::Disabled;
    const QString first = plan.cells.isEmpty() ? QString() : plan.cells.first().toString();
    const bool isComment =
        first.startsWith(QLatin1Char('#')) || first.startsWith(QLatin1String("//"));
    return isComment ? RowKind::Comment : RowKind::Plain;
}

TestPlanModel::Verdict TestPlanModel::verdict(const QModelIndex& index) const
{
    if (index.column() != m_verdictColumn || rowKind(index.row()) != RowKind::Plain)
        return Verdict::Plain;
    const QString text = value(index.row(), index.column()).toString().trimmed();
    if (isOneOf(text, {"fail", "error"}))
        return Verdict::Error;
    return isOneOf(text, {"warn", "warning"}) ? Verdict::Warning : Verdict::Plain;
}

CellValue TestPlanModel::value(int row, int column) const
{
    return m_plan.rows[static_cast<std::size_t>(row)].cells.value(column);
}

bool TestPlanModel::isBlank() const
{
    constexpr std::size_t fewRows = 100;
    return m_plan.rows.size() <= fewRows
        && std::all_of(m_plan.rows.begin(), m_plan.rows.end(), [](const TestPlanRow& row) {
               return std::none_of(row.cells.begin(), row.cells.end(),
                                   [](const CellValue& cell) { return cell.isValid(); });
           });
}

int TestPlanModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_plan.rows.size());
}

int TestPlanModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_plan.headings.size();
}

QVariant TestPlanModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const CellValue cell = value(index.row(), index.column());
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return cellText(cell);
    if (role == Qt::AccessibleTextRole) {
        // A screen reader says nothing at all about a cell without a name.
        const QString text = cellText(cell);
        return text.isEmpty() ? tr("empty") : text;
    }
    if (role == Qt::TextAlignmentRole) {
        const bool isNumber = cell.userType() == QMetaType::Double;
        return QVariant(Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

QVariant TestPlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return m_plan.headings.value(section);
    return role == Qt::TextAlignmentRole ? QVariant(Qt::AlignVCenter | Qt::AlignLeft) : QVariant();
}

Qt::ItemFlags TestPlanModel::flags(const QModelIndex& index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool TestPlanModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    // A cell keeps its content if its own text is typed again, even a text that looks like a
    // number.
    if (cellText(this->value(index.row(), index.column())) != value.toString())
        setCells(tr("Typing"), {{index.row(), index.column(), cellValue(value.toString())}});
    return true;
}

bool TestPlanModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                                  int role)
{
    if (orientation != Qt::Horizontal || role != Qt::EditRole || section < 0
        || section >= columnCount())
        return false;
    const auto heading = std::make_shared<QString>(value.toString().remove(QChar()));
    if (*heading == m_plan.headings.at(section))
        return true;
    const auto change = [this, section, heading] { exchangeHeading(section, *heading); };
    push(tr("Rename column"), change, change);
    return true;
}

bool TestPlanModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || row > rowCount() || count < 1
        || count > maxPlanRows - rowCount())
        return false;
    push(
        tr("Insert rows"),
        [this, row, count] {
            putRows(row, std::vector<TestPlanRow>(static_cast<std::size_t>(count)));
        },
        [this, row, count] { takeRows(row, count); });
    return true;
}

bool TestPlanModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || count < 1 || count > rowCount() - row)
        return false;
    const auto begin = m_plan.rows.begin() + row;
    push(
        tr("Remove rows"), [this, row, count] { takeRows(row, count); },
        [this, row, rows = std::vector<TestPlanRow>(begin, begin + count)] { putRows(row, rows); });
    return true;
}

bool TestPlanModel::insertColumns(int column, int count, const QModelIndex& parent)
{
    if (parent.isValid() || column < 0 || column > columnCount() || count < 1
        || count > maxPlanColumns - columnCount())
        return false;
    push(
        tr("Insert columns"), [this, column, count] { putColumns(column, count); },
        [this, column, count] { takeColumns(column, count); });
    return true;
}

bool TestPlanModel::removeColumns(int column, int count, const QModelIndex& parent)
{
    if (parent.isValid() || column < 0 || count < 1 || count > columnCount() - column
        || count >= columnCount())
        return false;
    push(
        tr("Remove columns"), [this, column, count] { takeColumns(column, count); },
        [this, column, count, plan = m_plan] { putBackColumns(column, count, plan); });
    return true;
}

bool TestPlanModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                             const QModelIndex& destinationParent, int destinationChild)
{
    if (sourceParent.isValid() || destinationParent.isValid()
        || !isMove(sourceRow, count, destinationChild, rowCount()))
        return false;
    const auto [row, destination] = wayBack(sourceRow, count, destinationChild);
    push(
        tr("Move rows"),
        [this, sourceRow, count, destinationChild] {
            shiftRows(sourceRow, count, destinationChild);
        },
        [this, from = row, count, to = destination] { shiftRows(from, count, to); });
    return true;
}

bool TestPlanModel::moveColumns(const QModelIndex& sourceParent, int sourceColumn, int count,
                                const QModelIndex& destinationParent, int destinationChild)
{
    if (sourceParent.isValid() || destinationParent.isValid()
        || !isMove(sourceColumn, count, destinationChild, columnCount()))
        return false;
    const auto [column, destination] = wayBack(sourceColumn, count, destinationChild);
    push(
        tr("Move columns"),
        [this, sourceColumn, count, destinationChild] {
            shiftColumns(sourceColumn, count, destinationChild);
        },
        [this, from = column, count, to = destination] { shiftColumns(from, count, to); });
    return true;
}

void TestPlanModel::setCells(const QString& text, std::vector<CellChange> changes)
{
    const bool isChange =
        std::any_of(changes.begin(), changes.end(), [this](const CellChange& change) {
            return !isSame(value(change.row, change.column), change.value);
        });
    if (!isChange)
        return;
    const auto held = std::make_shared<std::vector<CellChange>>(std::move(changes));
    const auto swap = [this, held] { exchange(*held); };
    push(text, swap, swap);
}

bool TestPlanModel::paste(int row, int column, const CellGrid& grid)
{
    if (grid.rows > maxPlanRows - row || grid.columns > maxPlanColumns - column)
        return false;
    std::vector<CellChange> changes;
    changes.reserve(grid.cells.size());
    for (int y = 0; y < grid.rows; ++y) {
        for (int x = 0; x < grid.columns; ++x)
            changes.push_back({row + y, column + x, grid.at(y, x)});
    }
    m_undoStack.beginMacro(tr("Paste"));
    if (row + grid.rows > rowCount())
        insertRows(rowCount(), row + grid.rows - rowCount());
    if (column + grid.columns > columnCount())
        insertColumns(columnCount(), column + grid.columns - columnCount());
    setCells(tr("Paste"), std::move(changes));
    m_undoStack.endMacro();
    return true;
}

void TestPlanModel::setRowsDisabled(int row, int count, bool isDisabled)
{
    std::vector<bool> before;
    for (int i = row; i < row + count; ++i)
        before.push_back(this->row(i).isDisabled);
    const auto set = [this, row, count](const std::vector<bool>& flags) {
        for (int i = 0; i < count; ++i)
            this->row(row + i).isDisabled = flags[static_cast<std::size_t>(i)];
        Q_EMIT dataChanged(index(row, 0), index(row + count - 1, columnCount() - 1));
    };
    push(
        isDisabled ? tr("Disable rows") : tr("Enable rows"),
        [set, flags = std::vector<bool>(before.size(), isDisabled)] { set(flags); },
        [set, before] { set(before); });
}

void TestPlanModel::push(const QString& text, const std::function<void()>& redo,
                         const std::function<void()>& undo)
{
    m_undoStack.push(new Edit(text, redo, undo));
}

CellValue& TestPlanModel::cell(int row, int column)
{
    QVector<CellValue>& cells = this->row(row).cells;
    if (cells.size() <= column)
        cells.resize(column + 1);
    return cells[column];
}

TestPlanRow& TestPlanModel::row(int row)
{
    return m_plan.rows[static_cast<std::size_t>(row)];
}

void TestPlanModel::exchange(std::vector<CellChange>& changes)
{
    int first = rowCount();
    int last = 0;
    for (CellChange& change : changes) {
        std::swap(cell(change.row, change.column), change.value);
        first = std::min(first, change.row);
        last = std::max(last, change.row);
    }
    // The look of a whole row may depend on one cell, so whole rows are reported as changed.
    Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
}

void TestPlanModel::putRows(int row, const std::vector<TestPlanRow>& rows)
{
    beginInsertRows(QModelIndex(), row, row + static_cast<int>(rows.size()) - 1);
    m_plan.rows.insert(m_plan.rows.begin() + row, rows.begin(), rows.end());
    endInsertRows();
}

void TestPlanModel::takeRows(int row, int count)
{
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    m_plan.rows.erase(m_plan.rows.begin() + row, m_plan.rows.begin() + row + count);
    endRemoveRows();
}

void TestPlanModel::shiftRows(int row, int count, int destination)
{
    beginMoveRows(QModelIndex(), row, row + count - 1, QModelIndex(), destination);
    shift(m_plan.rows.begin(), row, count, destination);
    endMoveRows();
}

void TestPlanModel::putColumns(int column, int count)
{
    beginInsertColumns(QModelIndex(), column, column + count - 1);
    for (int i = 0; i < count; ++i)
        m_plan.headings.insert(column + i, tr("Column %1").arg(column + i + 1));
    for (TestPlanRow& row : m_plan.rows) {
        if (row.cells.size() > column)
            row.cells.insert(column, count, CellValue());
    }
    headingsChanged();
    endInsertColumns();
}

void TestPlanModel::takeColumns(int column, int count)
{
    beginRemoveColumns(QModelIndex(), column, column + count - 1);
    m_plan.headings.erase(m_plan.headings.begin() + column,
                          m_plan.headings.begin() + column + count);
    for (TestPlanRow& row : m_plan.rows) {
        const int present = std::min(count, row.cells.size() - column);
        if (present > 0)
            row.cells.remove(column, present);
    }
    headingsChanged();
    endRemoveColumns();
}

void TestPlanModel::shiftColumns(int column, int count, int destination)
{
    beginMoveColumns(QModelIndex(), column, column + count - 1, QModelIndex(), destination);
    shift(m_plan.headings.begin(), column, count, destination);
    for (TestPlanRow& row : m_plan.rows) {
        row.cells.resize(m_plan.headings.size());
        shift(row.cells.begin(), column, count, destination);
    }
    headingsChanged();
    endMoveColumns();
}

void TestPlanModel::putBackColumns(int column, int count, const TestPlan& plan)
{
    beginInsertColumns(QModelIndex(), column, column + count - 1);
    m_plan = plan;
    headingsChanged();
    endInsertColumns();
}

void TestPlanModel::exchangeHeading(int section, QString& heading)
{
    std::swap(m_plan.headings[section], heading);
    headingsChanged();
    Q_EMIT headerDataChanged(Qt::Horizontal, section, section);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, section), index(rowCount() - 1, section));
}

void TestPlanModel::headingsChanged()
{
    const auto found =
        std::find_if(m_plan.headings.cbegin(), m_plan.headings.cend(), [](const QString& heading) {
            return isOneOf(heading.trimmed(), {"verdict"});
        });
    m_verdictColumn = found == m_plan.headings.cend()
        ? -1
        : static_cast<int>(std::distance(m_plan.headings.cbegin(), found));
}

} // namespace workbench
