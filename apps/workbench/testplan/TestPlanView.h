#pragma once

#include "testplan/Span.h"
#include "testplan/TestPlanModel.h"

#include <zvworkbench/Failure.h>

#include <QRect>
#include <QTableView>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace workbench {

class ClipboardCells;
class HeadingEditor;
struct CellGrid;

/// Shows a test plan as a table, with the keys that people know from spreadsheets.
class TestPlanView : public QTableView
{
    Q_OBJECT

public:
    /// Creates the view. \p model must outlive it.
    TestPlanView(TestPlanModel& model, QWidget* parent);
    ~TestPlanView() override;

    /// Commits what is being typed to the model.
    void finishTyping();
    /// Returns the cell that the user is typing into, with what it would become, or nothing.
    std::optional<TestPlanModel::CellChange> typed() const;

    /// Fits the widths of columns to the contents of the first rows.
    void fitColumns();

    /// Copies the selected cells. If that fails, emits `failed` and returns false.
    bool copy();
    void cut();
    void paste();
    void clearCells();
    void fillDown();

    /// Inserts as many rows in front of each block of selected rows as the block has.
    void insertRowsAbove();
    void removeSelectedRows();
    /// Moves the selected rows by one: up if \p step is -1, down if it is 1. Moves none if one of
    /// them is at the edge.
    void moveSelectedRows(int step);
    /// Inserts as many columns in front of each block of selected columns as the block has.
    void insertColumnsBefore();
    void removeSelectedColumns();
    void moveSelectedColumns(int step);
    void setSelectedRowsDisabled(bool isDisabled);
    bool isCurrentRowDisabled() const;

    /// Makes the first cell of a row current, and shows it.
    void goToRow(int row);
    void selectCurrentRows();
    void selectCurrentColumns();

    /// Lets the user type a name for a column, in its heading.
    void renameHeading(int section);

Q_SIGNALS:
    void failed(const workbench::Failure& failure);
    /// Emitted when the selection changes, or another cell becomes current.
    void selectionMoved();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    /// A rectangle of cells, and what all cells of each of its columns become.
    struct Filling
    {
        QRect cells;
        std::vector<CellValue> values;
    };

    /// Returns the selected blocks, in columns and rows as all rectangles here.
    std::vector<QRect> selectedBlocks() const;
    /// Returns the rectangle around all selected blocks, or the current cell if there are none.
    QRect selectedRectangle() const;
    /// Returns the rows, or columns, that have a selected cell; that of the current cell if there
    /// is none.
    Spans selectedSpans(Qt::Orientation orientation) const;
    CellGrid selectedCells() const;
    /// Calls \p work for each of \p spans, the last one first, as one step called \p text.
    void change(const QString& text, const Spans& spans,
                const std::function<void(const Span&)>& work);
    void moveCurrent(int columns, int rows);
    void select(const std::vector<QRect>& blocks);
    /// Appends what \p filling changes, without empty cells that stay empty. Returns false if that
    /// is too much at once.
    bool addChanges(const Filling& filling, std::vector<TestPlanModel::CellChange>& changes) const;
    /// Fills cells as one step called \p text. If there are too many, emits `failed` with \p what
    /// instead.
    void fill(const QString& text, const QString& what, const std::vector<Filling>& fillings);
    ClipboardCells clipboardCells();
    CellGrid gridOf(const ClipboardCells& cells);
    void pasteCells(const CellGrid& grid);
    bool mayPaste(const ClipboardCells& cells);
    /// Paints a comment over the empty cells after it, if its own cell is too narrow.
    void paintComment(QPainter& painter, int row);

    TestPlanModel& m_model;
    std::unique_ptr<HeadingEditor> m_headings;
};

} // namespace workbench
