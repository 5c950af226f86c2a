#pragma once

#include "Plan.h"
#include "UndoStates.h"
#include "testplan/TestPlanClipboard.h"

#include <QAbstractItemModel>
#include <QItemSelection>
#include <QList>
#include <QRect>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace zvtest {

/// A test plan in its plainest form. A number has a "=" in front of it, as `textOf` writes it.
struct PlainPlan
{
    QStringList headings;
    QList<QStringList> rows;
    QList<bool> disabled;

    std::string text() const
    {
        QStringList lines{headings.join('|')};
        for (int row = 0; row < rows.size(); ++row)
            lines.append((disabled.at(row) ? QString("-") : QString()) + rows.at(row).join('|'));
        return lines.join('\n').toStdString();
    }

    friend bool operator==(const PlainPlan& a, const PlainPlan& b)
    {
        return a.headings == b.headings && a.rows == b.rows && a.disabled == b.disabled;
    }
};

inline QString plainCell(const workbench::CellValue& value)
{
    const bool isNumber = value.userType() == QMetaType::Double;
    return (isNumber ? QString("=") : QString()) + workbench::cellText(value);
}

inline workbench::CellValue cellOf(const QString& plain)
{
    if (plain.startsWith('='))
        return plain.mid(1).toDouble();
    return plain.isEmpty() ? workbench::CellValue() : workbench::CellValue(plain);
}

struct PlanModel
{
    UndoHistory<PlainPlan> history{{{"A", "B", "C"},
                                    {{"a1", "=1", ""}, {"a2", "5", "c2"}, {"", "", ""}},
                                    {false, true, false}}};

    std::string text() const { return history.now().text(); }
    int rows() const { return history.now().rows.size(); }
    int columns() const { return history.now().headings.size(); }
    void settle() { }
};

/// What a view knows of a model that it asks only where a signal tells it to.
class Mirror
{
public:
    explicit Mirror(const QAbstractItemModel& model)
        : m_model(model)
    {
        using Model = QAbstractItemModel;
        readAll();
        connect(&Model::modelReset, [this] { readAll(); });
        connect(&Model::dataChanged, [this](const QModelIndex& a, const QModelIndex& b) {
            for (int row = a.row(); row <= b.row(); ++row)
                read(row, a.column(), b.column());
        });
        connect(&Model::headerDataChanged, [this](Qt::Orientation /*orientation*/, int a, int b) {
            for (int column = a; column <= b; ++column)
                m_headings[column] = heading(column);
        });
        connect(&Model::rowsInserted, [this](const QModelIndex& /*parent*/, int a, int b) {
            for (int row = a; row <= b; ++row) {
                m_rows.insert(row, emptyRow(m_headings.size()));
                read(row, 0, m_headings.size() - 1);
            }
        });
        connect(&Model::rowsRemoved, [this](const QModelIndex& /*parent*/, int a, int b) {
            m_rows.erase(m_rows.begin() + a, m_rows.begin() + b + 1);
        });
        connect(&Model::rowsMoved,
                [this](const QModelIndex& /*parent*/, int a, int b, const QModelIndex& /*to*/,
                       int destination) { move(m_rows, a, b + 1, destination); });
        connectColumns();
    }

    bool isRight() const
    {
        if (m_headings.size() != m_model.columnCount() || m_rows.size() != m_model.rowCount())
            return false;
        for (int column = 0; column < m_headings.size(); ++column) {
            if (m_headings.at(column) != heading(column))
                return false;
            for (int row = 0; row < m_rows.size(); ++row) {
                if (m_rows.at(row).at(column) != cell(row, column))
                    return false;
            }
        }
        return true;
    }

private:
    template <typename Signal, typename Slot>
    void connect(Signal signal, Slot slot)
    {
        QObject::connect(&m_model, signal, &m_context, slot);
    }

    void connectColumns()
    {
        using Model = QAbstractItemModel;
        connect(&Model::columnsInserted, [this](const QModelIndex& /*parent*/, int a, int b) {
            for (int column = a; column <= b; ++column) {
                m_headings.insert(column, heading(column));
                for (int row = 0; row < m_rows.size(); ++row)
                    m_rows[row].insert(column, cell(row, column));
            }
        });
        connect(&Model::columnsRemoved, [this](const QModelIndex& /*parent*/, int a, int b) {
            m_headings.erase(m_headings.begin() + a, m_headings.begin() + b + 1);
            for (QStringList& row : m_rows)
                row.erase(row.begin() + a, row.begin() + b + 1);
        });
        connect(&Model::columnsMoved,
                [this](const QModelIndex& /*parent*/, int a, int b, const QModelIndex& /*to*/,
                       int destination) {
                    move(m_headings, a, b + 1, destination);
                    for (QStringList& row : m_rows)
                        move(row, a, b + 1, destination);
                });
    }

    static QStringList emptyRow(int columns)
    {
        QStringList row;
        while (row.size() < columns)
            row.append(QString());
        return row;
    }

    template <typename List>
    static void move(List& list, int first, int end, int destination)
    {
        const auto begin = list.begin();
        if (destination < first)
            std::rotate(begin + destination, begin + first, begin + end);
        else
            std::rotate(begin + first, begin + end, begin + destination);
    }

    QString heading(int column) const
    {
        return m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }

    QString cell(int row, int column) const { return m_model.index(row, column).data().toString(); }

    void read(int row, int first, int last)
    {
        for (int column = first; column <= last; ++column)
            m_rows[row][column] = cell(row, column);
    }

    void readAll()
    {
        m_headings = emptyRow(m_model.columnCount());
        for (int column = 0; column < m_headings.size(); ++column)
            m_headings[column] = heading(column);
        m_rows.clear();
        for (int row = 0; row < m_model.rowCount(); ++row) {
            m_rows.append(emptyRow(m_headings.size()));
            read(row, 0, m_headings.size() - 1);
        }
    }

    QObject m_context;
    const QAbstractItemModel& m_model;
    QStringList m_headings;
    QList<QStringList> m_rows;
};

/// A plan with its view, and a mirror that follows the signals.
class PlanSystem
{
public:
    PlanSystem() { model.setPlan(firstPlan()); }

    QUndoStack& undoStack() { return model.undoStack(); }
    std::string text() const { return textOf(model.plan()).join('\n').toStdString(); }
    std::string fault() const
    {
        return m_mirror.isRight() ? "" : "the signals tell something else";
    }

    void select(const std::vector<QRect>& blocks)
    {
        QItemSelection selection;
        for (const QRect& block : blocks)
            selection.select(model.index(block.top(), block.left()),
                             model.index(block.bottom(), block.right()));
        view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    }

    workbench::TestPlanModel model;
    workbench::TestPlanView view{model, nullptr};

private:
    static workbench::TestPlan firstPlan()
    {
        const PlainPlan first = PlanModel().history.now();
        workbench::TestPlan plan;
        plan.headings = first.headings;
        for (int row = 0; row < first.rows.size(); ++row) {
            plan.rows.emplace_back();
            plan.rows.back().isDisabled = first.disabled.at(row);
            for (const QString& cell : first.rows.at(row))
                plan.rows.back().cells.append(cellOf(cell));
        }
        return plan;
    }

    Mirror m_mirror{model};
};

using PlanCommand = UndoableCommand<PlanModel, PlanSystem>;

inline QString typedText()
{
    return QString::fromLatin1(
        *rc::gen::element("", "a", "b", "5", "5.0", "007", "-0", "1e3", "# c"));
}

class TypeCell : public PlanCommand
{
public:
    explicit TypeCell(const PlanModel& model)
        : m_row(*rc::gen::inRange(0, std::max(model.rows(), 1)))
        , m_column(*rc::gen::inRange(0, model.columns()))
    {
    }

    void checkPreconditions(const PlanModel& model) const override
    {
        RC_PRE(m_row < model.rows() && m_column < model.columns());
    }

private:
    std::string description() const override
    {
        return "“" + m_text.toStdString() + "” in "
            + workbench::cellName(m_row, m_column).toStdString();
    }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        QString& cell = plan.rows[m_row][m_column];
        const QString typed = plainCell(workbench::cellValue(m_text));
        // What is shown already isn't typed.
        if (cell == m_text || cell == '=' + m_text || cell == typed)
            return;
        cell = typed;
        model.history.push(plan);
    }

    void perform(const PlanModel& /*before*/, PlanSystem& system) const override
    {
        system.model.setData(system.model.index(m_row, m_column), m_text, Qt::EditRole);
    }

    int m_row;
    int m_column;
    QString m_text = typedText();
};

class RenameHeading : public PlanCommand
{
public:
    explicit RenameHeading(const PlanModel& model)
        : m_column(*rc::gen::inRange(0, model.columns()))
    {
    }

    void checkPreconditions(const PlanModel& model) const override
    {
        RC_PRE(m_column < model.columns());
    }

private:
    std::string description() const override
    {
        return "column " + std::to_string(m_column) + " renamed to " + m_text.toStdString();
    }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        if (plan.headings.at(m_column) == m_text)
            return;
        plan.headings[m_column] = m_text;
        model.history.push(plan);
    }

    void perform(const PlanModel& /*before*/, PlanSystem& system) const override
    {
        system.model.setHeaderData(m_column, Qt::Horizontal, m_text, Qt::EditRole);
    }

    int m_column;
    QString m_text = typedText();
};

class PasteCells : public PlanCommand
{
public:
    explicit PasteCells(const PlanModel& model)
        : m_row(*rc::gen::inRange(0, model.rows() + 2))
        , m_column(*rc::gen::inRange(0, model.columns() + 2))
    {
        m_grid.rows = *rc::gen::inRange(1, 4);
        m_grid.columns = *rc::gen::inRange(1, 4);
        for (int i = 0; i < m_grid.rows * m_grid.columns; ++i)
            m_grid.cells.push_back(anyCell());
    }

private:
    std::string description() const override
    {
        return std::to_string(m_grid.rows) + " rows of " + std::to_string(m_grid.columns)
            + " pasted at " + workbench::cellName(m_row, m_column).toStdString();
    }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        while (plan.headings.size() < m_column + m_grid.columns) {
            plan.headings.append(QString("Column %1").arg(plan.headings.size() + 1));
            for (QStringList& row : plan.rows)
                row.append(QString());
        }
        while (plan.rows.size() < m_row + m_grid.rows) {
            plan.rows.append(QStringList());
            plan.disabled.append(false);
            while (plan.rows.last().size() < plan.headings.size())
                plan.rows.last().append(QString());
        }
        for (int y = 0; y < m_grid.rows; ++y) {
            for (int x = 0; x < m_grid.columns; ++x)
                plan.rows[m_row + y][m_column + x] = plainCell(m_grid.at(y, x));
        }
        model.history.push(plan);
    }

    void perform(const PlanModel& /*before*/, PlanSystem& system) const override
    {
        system.model.paste(m_row, m_column, m_grid);
    }

    /// Files and cells that were copied may have texts that look like numbers.
    static workbench::CellValue anyCell()
    {
        return *rc::gen::arbitrary<bool>() ? workbench::cellValue(typedText()) : cellOf("5");
    }

    int m_row;
    int m_column;
    workbench::CellGrid m_grid;
};

/// What a user does with one or two selected blocks.
class BlocksCommand : public PlanCommand
{
public:
    explicit BlocksCommand(const PlanModel& model)
    {
        if (model.rows() == 0)
            return;
        const bool isOne = *rc::gen::arbitrary<bool>();
        m_blocks.push_back(block(model));
        if (!isOne)
            m_blocks.push_back(block(model));
    }

    void checkPreconditions(const PlanModel& model) const override
    {
        // RC_PRE evaluates all of its argument.
        const QRect all(0, 0, model.columns(), model.rows());
        const bool areInside =
            std::all_of(m_blocks.begin(), m_blocks.end(),
                        [&all](const QRect& block) { return all.contains(block); });
        const bool areApart = m_blocks.size() < 2 || !m_blocks.front().intersects(m_blocks.back());
        const bool isEnough = !m_blocks.empty() || (mayBeEmpty() && model.rows() == 0);
        RC_PRE(areInside);
        RC_PRE(areApart);
        RC_PRE(isEnough);
    }

protected:
    virtual bool mayBeEmpty() const { return false; }
    virtual std::string action() const = 0;
    virtual void act(PlanSystem& system) const = 0;

    const std::vector<QRect>& blocks() const { return m_blocks; }

    std::set<int> rows() const
    {
        std::set<int> rows;
        for (const QRect& block : m_blocks) {
            for (int row = block.top(); row <= block.bottom(); ++row)
                rows.insert(row);
        }
        return rows;
    }

    std::set<int> columns() const
    {
        std::set<int> columns;
        for (const QRect& block : m_blocks) {
            for (int column = block.left(); column <= block.right(); ++column)
                columns.insert(column);
        }
        return columns;
    }

    /// Moves lines by one: exchanges each with the line beside it, in the order in which none is moved
    /// twice. Returns false, and moves none, if one is at the edge.
    static bool moveLines(const std::set<int>& lines, int step, int all,
                          const std::function<void(int, int)>& exchange)
    {
        if (step < 0 ? *lines.begin() == 0 : *lines.rbegin() == all - 1)
            return false;
        std::vector<int> order(lines.begin(), lines.end());
        if (step > 0)
            std::reverse(order.begin(), order.end());
        for (const int line : order)
            exchange(line, line + step);
        return true;
    }

private:
    static QRect block(const PlanModel& model)
    {
        const int column = *rc::gen::inRange(0, model.columns());
        const int row = *rc::gen::inRange(0, model.rows());
        return {column, row, *rc::gen::inRange(1, 3), *rc::gen::inRange(1, 3)};
    }

    std::string description() const override
    {
        std::string text = action();
        for (const QRect& block : m_blocks)
            text += " " + workbench::cellName(block.top(), block.left()).toStdString() + "-"
                + workbench::cellName(block.bottom(), block.right()).toStdString();
        return text;
    }

    void perform(const PlanModel& /*before*/, PlanSystem& system) const override
    {
        system.select(m_blocks);
        act(system);
    }

    std::vector<QRect> m_blocks;
};

class InsertRowsAbove : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    bool mayBeEmpty() const override { return true; }
    std::string action() const override { return "insert rows above"; }
    void act(PlanSystem& system) const override { system.view.insertRowsAbove(); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        QStringList empty;
        while (empty.size() < model.columns())
            empty.append(QString());
        std::set<int> selected = rows();
        if (selected.empty())
            selected.insert(0);
        // Before each run of rows, as many.
        for (auto row = selected.rbegin(); row != selected.rend(); ++row) {
            int first = *row;
            while (selected.count(first - 1) > 0)
                --first;
            plan.rows.insert(first, empty);
            plan.disabled.insert(first, false);
        }
        model.history.push(plan);
    }
};

class RemoveSelectedRows : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return "remove rows"; }
    void act(PlanSystem& system) const override { system.view.removeSelectedRows(); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        const std::set<int> selected = rows();
        for (auto row = selected.rbegin(); row != selected.rend(); ++row) {
            plan.rows.removeAt(*row);
            plan.disabled.removeAt(*row);
        }
        model.history.push(plan);
    }
};

class MoveSelectedRows : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return m_step < 0 ? "move up" : "move down"; }
    void act(PlanSystem& system) const override { system.view.moveSelectedRows(m_step); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        const bool isMoved = moveLines(rows(), m_step, plan.rows.size(), [&plan](int a, int b) {
            plan.rows.swapItemsAt(a, b);
            plan.disabled.swapItemsAt(a, b);
        });
        if (isMoved)
            model.history.push(plan);
    }

    int m_step = *rc::gen::element(-1, 1);
};

class InsertColumnsBefore : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return "insert columns before"; }
    void act(PlanSystem& system) const override { system.view.insertColumnsBefore(); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        const std::set<int> selected = columns();
        for (auto column = selected.rbegin(); column != selected.rend(); ++column) {
            if (selected.count(*column - 1) > 0)
                continue;
            int end = *column;
            for (; selected.count(end) > 0; ++end) {
                plan.headings.insert(end, QString("Column %1").arg(end + 1));
                for (QStringList& row : plan.rows)
                    row.insert(end, QString());
            }
        }
        model.history.push(plan);
    }
};

class RemoveSelectedColumns : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return "remove columns"; }
    void act(PlanSystem& system) const override { system.view.removeSelectedColumns(); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        const std::set<int> selected = columns();
        // One has to stay.
        if (static_cast<int>(selected.size()) == plan.headings.size())
            return;
        for (auto column = selected.rbegin(); column != selected.rend(); ++column) {
            plan.headings.removeAt(*column);
            for (QStringList& row : plan.rows)
                row.removeAt(*column);
        }
        model.history.push(plan);
    }
};

class MoveSelectedColumns : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return m_step < 0 ? "move left" : "move right"; }
    void act(PlanSystem& system) const override { system.view.moveSelectedColumns(m_step); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        const auto exchange = [&plan](int a, int b) {
            plan.headings.swapItemsAt(a, b);
            for (QStringList& row : plan.rows)
                row.swapItemsAt(a, b);
        };
        if (moveLines(columns(), m_step, plan.headings.size(), exchange))
            model.history.push(plan);
    }

    int m_step = *rc::gen::element(-1, 1);
};

class ClearCells : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return "clear"; }
    void act(PlanSystem& system) const override { system.view.clearCells(); }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        for (const QRect& block : blocks()) {
            for (int row = block.top(); row <= block.bottom(); ++row) {
                for (int column = block.left(); column <= block.right(); ++column)
                    plan.rows[row][column] = QString();
            }
        }
        if (!(plan == model.history.now()))
            model.history.push(plan);
    }
};

class FillDown : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return "fill down"; }
    void act(PlanSystem& system) const override { system.view.fillDown(); }

    void change(PlanModel& model) const override
    {
        const PlainPlan& before = model.history.now();
        PlainPlan plan = before;
        for (const QRect& block : blocks()) {
            const int source = block.height() == 1 ? block.top() - 1 : block.top();
            for (int row = source + 1; source >= 0 && row <= block.bottom(); ++row) {
                for (int column = block.left(); column <= block.right(); ++column)
                    plan.rows[row][column] = before.rows.at(source).at(column);
            }
        }
        if (!(plan == before))
            model.history.push(plan);
    }
};

class DisableSelectedRows : public BlocksCommand
{
public:
    using BlocksCommand::BlocksCommand;

private:
    std::string action() const override { return m_isDisabled ? "disable" : "enable"; }
    void act(PlanSystem& system) const override
    {
        system.view.setSelectedRowsDisabled(m_isDisabled);
    }

    void change(PlanModel& model) const override
    {
        PlainPlan plan = model.history.now();
        for (const int row : rows())
            plan.disabled[row] = m_isDisabled;
        model.history.push(plan);
    }

    bool m_isDisabled = *rc::gen::arbitrary<bool>();
};

} // namespace zvtest
