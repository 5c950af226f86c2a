#pragma once

#include "testplan/TestPlan.h"

#include <QAbstractTableModel>
#include <QUndoStack>

#include <functional>
#include <vector>

namespace workbench {

struct CellGrid;

/// A test plan as an editable table. All edits, also those through the interface of item models, go
/// through the undo stack; each is one step of it.
class TestPlanModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum class RowKind { Plain, Comment, Disabled };
    enum class Verdict { Plain, Warning, Error };

    /// Creates the model with a fresh plan.
    explicit TestPlanModel(QObject* parent = nullptr);

    const TestPlan& plan() const;
    /// Replaces the plan, and clears the undo stack.
    void setPlan(TestPlan plan);

    QUndoStack& undoStack();

    /// Returns the kind of a row. The first cell of a comment begins with "#" or "//"; a disabled
    /// row isn't a comment.
    RowKind rowKind(int row) const;
    /// Returns what a cell says as the verdict of a plain row, or `Plain` for cells of other rows
    /// and columns. The column of verdicts is the first with the heading "Verdict", compared
    /// without case.
    Verdict verdict(const QModelIndex& index) const;
    CellValue value(int row, int column) const;
    /// Returns whether no cell has a content, and there are no more rows than on a screen.
    bool isBlank() const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Sets a cell to the content that typing a text gives; see `cellValue`.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role) override;

    /// Inserts rows. Like the functions below up to `moveColumns`, returns false and does nothing
    /// if the plan would exceed its limits or lose its last column.
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool insertColumns(int column, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeColumns(int column, int count, const QModelIndex& parent = QModelIndex()) override;
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                  const QModelIndex& destinationParent, int destinationChild) override;
    bool moveColumns(const QModelIndex& sourceParent, int sourceColumn, int count,
                     const QModelIndex& destinationParent, int destinationChild) override;

    struct CellChange
    {
        int row;
        int column;
        CellValue value;
    };
    /// Sets cells, which must exist and differ from each other, as one step called \p text. Does
    /// nothing if all have these contents already.
    void setCells(const QString& text, std::vector<CellChange> changes);

    /// Sets a rectangle of cells, and adds the rows and columns that it needs. Returns false, and
    /// does nothing, if the plan would exceed its limits.
    bool paste(int row, int column, const CellGrid& grid);

    void setRowsDisabled(int row, int count, bool isDisabled);

private:
    void push(const QString& text, const std::function<void()>& redo,
              const std::function<void()>& undo);
    CellValue& cell(int row, int column);
    TestPlanRow& row(int row);
    void exchange(std::vector<CellChange>& changes);
    void putRows(int row, const std::vector<TestPlanRow>& rows);
    void takeRows(int row, int count);
    void shiftRows(int row, int count, int destination);
    void putColumns(int column, int count);
    void takeColumns(int column, int count);
    void shiftColumns(int column, int count, int destination);
    void putBackColumns(int column, int count, const TestPlan& plan);
    void exchangeHeading(int section, QString& heading);
    void headingsChanged();

    TestPlan m_plan;
    int m_verdictColumn = -1;
    QUndoStack m_undoStack;
};

} // namespace workbench
