#pragma once

#include "Failure.h"

#include <QRect>
#include <QTableView>

#include <vector>

class QLineEdit;

namespace workbench {

class ClipboardCells;
class TestPlanModel;
struct CellGrid;

/// A test plan as a table, with the keys that people know from spreadsheets and what they lead to.
class TestPlanView : public QTableView
{
    Q_OBJECT

public:
    /// The model has to stay for as long as the view.
    TestPlanView(TestPlanModel& model, QWidget* parent);

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

    /// As many as there are selected rows, in front of them.
    void insertRowsAbove();
    void removeSelectedRows();
    /// By one row: -1 is up, 1 is down.
    void moveSelectedRows(int step);
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
    /// In columns and rows, as all of the rectangles here.
    std::vector<QRect> selectedBlocks() const;
    QRect selectedRectangle() const;
    CellGrid selectedCells() const;
    void moveCurrent(int columns, int rows);
    void select(const QRect& cells);
    ClipboardCells clipboardCells();
    CellGrid gridOf(const ClipboardCells& cells);
    void pasteCells(const CellGrid& grid);
    bool mayPaste(const ClipboardCells& cells);
    /// Over the empty cells behind it, if its own is too narrow.
    void paintComment(QPainter& painter, int row);
    void endRenaming(bool isKept);

    TestPlanModel& m_model;
    QLineEdit* m_headingField = nullptr; ///< while a heading is being typed
    int m_headingSection = 0;
};

} // namespace workbench
