#pragma once

#include "testplan/TestPlan.h"

#include <QAbstractTableModel>
#include <QUndoStack>

#include <functional>
#include <vector>

namespace workbench {

struct CellGrid;

/// A test plan as an editable table. All edits, also those through the interface of item models, go
/// over the undo stack; each is one step of it.
class TestPlanModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum class RowKind { Plain, Comment, Disabled };
    enum class Verdict { Plain, Warning, Error };

    /// With a fresh plan.
    explicit TestPlanModel(QObject* parent = nullptr);

    const TestPlan& plan() const;
    /// Replaces all, and forgets all edits.
    void setPlan(TestPlan plan);

    QUndoStack& undoStack();

    /// Disabled goes before comment, whose first cell begins with "#" or "//".
    RowKind rowKind(int row) const;
    /// What the cell says as the verdict of a row that is plain; `Plain` in all other columns. The
    /// column is the first with the heading "Verdict", in any case.
    Verdict verdict(const QModelIndex& index) const;
    CellValue value(int row, int column) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Takes a text as `cellValue` does.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role) override;

    /// False beyond the limits of plans; the last column stays.
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
    /// Sets cells, which have to be there and differ from each other, as one step called \p text;
    /// none if all have these values.
    void setCells(const QString& text, std::vector<CellChange> changes);

    /// Sets a rectangle of cells, and adds the rows and columns that it needs. False, and nothing
    /// is done, beyond the limits of plans.
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
