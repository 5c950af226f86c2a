#pragma once

#include "common/Failure.h"
#include "testplan/Span.h"
#include "testplan/TestPlanModel.h"

#include <QRect>
#include <QTableView>

#include <functional>
#include <memory>
#include <vector>

namespace workbench {

class ClipboardCells;
class HeadingEditor;
struct CellGrid;

/// A test plan as a table, with the keys that people know from spreadsheets and what they lead to.
class TestPlanView : public QTableView
{
    Q_OBJECT

public:
    /// The model has to stay for as long as the view.
    TestPlanView(TestPlanModel& model, QWidget* parent);
    ~TestPlanView() override;

    /// Takes what is being typed over into the model.
    void finishTyping();

    /// Widths that suit the contents, as far as a look at the first rows can tell.
    void fitColumns();

    /// False if that has failed.
    bool copy();
    void cut();
    void paste();
    void clearCells();
    void fillDown();

    /// In front of each block of selected rows as many as it has.
    void insertRowsAbove();
    void removeSelectedRows();
    /// By one row: -1 is up, 1 is down. None moves if one of them is at the edge.
    void moveSelectedRows(int step);
    /// As with rows.
    void insertColumnsBefore();
    void removeSelectedColumns();
    void moveSelectedColumns(int step);
    void setSelectedRowsDisabled(bool isDisabled);
    bool isCurrentRowDisabled() const;

    void selectCurrentRows();
    void selectCurrentColumns();

    /// Lets the user type a name for a column, in its heading.
    void renameHeading(int section);

Q_SIGNALS:
    void failed(const workbench::Failure& failure);
    /// Another cell is the current one, or other cells are selected.
    void selectionMoved();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    /// Cells, and what all cells of each of their columns become.
    struct Filling
    {
        QRect cells;
        std::vector<CellValue> values;
    };

    /// In columns and rows, as all of the rectangles here.
    std::vector<QRect> selectedBlocks() const;
    /// With all that lies between the blocks.
    QRect selectedRectangle() const;
    /// The rows, or columns, that have a selected cell; that of the current cell if there is none.
    Spans selectedSpans(Qt::Orientation orientation) const;
    CellGrid selectedCells() const;
    /// Changes each of \p spans, the last one first, as one step called \p text.
    void change(const QString& text, const Spans& spans,
                const std::function<void(const Span&)>& work);
    void moveCurrent(int columns, int rows);
    void select(const std::vector<QRect>& blocks);
    /// What changes; cells that are empty and stay so don't. False if that is too much at once.
    bool addChanges(const Filling& filling, std::vector<TestPlanModel::CellChange>& changes) const;
    /// One step called \p text. If there are too many cells, the failure \p what is told instead.
    void fill(const QString& text, const QString& what, const std::vector<Filling>& fillings);
    ClipboardCells clipboardCells();
    CellGrid gridOf(const ClipboardCells& cells);
    void pasteCells(const CellGrid& grid);
    bool mayPaste(const ClipboardCells& cells);
    /// Over the empty cells behind it, if its own is too narrow.
    void paintComment(QPainter& painter, int row);

    TestPlanModel& m_model;
    std::unique_ptr<HeadingEditor> m_headings;
};

} // namespace workbench
