// Editing test plans of the workbench: rows, columns, blocks of cells and undo.

#include "DocumentTest.h"
#include "Plan.h"

#include "common/path_names.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

using workbench::TestPlan;
using zvtest::Plan;
using zvtest::planOf;
using zvtest::savePlan;
using zvtest::setForeign;
using zvtest::textOf;

Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

class tst_workbench_testplan_edits : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void moving_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("to");
        const auto row = [](const char* name, int code, Qt::KeyboardModifiers modifiers,
                            QPoint to) { QTest::newRow(name) << code << modifiers << to; };
        row("Return", Qt::Key_Return, Qt::NoModifier, {1, 2});
        row("Enter", Qt::Key_Enter, Qt::KeypadModifier, {1, 2});
        row("Shift+Return", Qt::Key_Return, Qt::ShiftModifier, {1, 0});
        row("Tab", Qt::Key_Tab, Qt::NoModifier, {2, 1});
        row("Shift+Tab", Qt::Key_Backtab, Qt::ShiftModifier, {0, 1});
        row("Ctrl+Home", Qt::Key_Home, Qt::ControlModifier, {0, 0});
        row("Ctrl+End", Qt::Key_End, Qt::ControlModifier, {2, 3});
        row("Home", Qt::Key_Home, Qt::NoModifier, {0, 1});
        row("Down", Qt::Key_Down, Qt::NoModifier, {1, 2});
    }

    void moving()
    {
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QPoint, to);
        Plan plan;
        plan.goTo(1, 1);
        plan.key(code, modifiers);
        QCOMPARE(plan.current(), to);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 1);
        QVERIFY(!plan.document.isModified());
    }

    void movingEndsAtTheEdges()
    {
        Plan plan;
        plan.key(Qt::Key_Backtab, Qt::ShiftModifier);
        plan.key(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(plan.current(), QPoint(0, 0));
        plan.key(Qt::Key_End, Qt::ControlModifier);
        plan.key(Qt::Key_Tab);
        plan.key(Qt::Key_Return);
        QCOMPARE(plan.current(), QPoint(2, 3));
    }

    void selecting()
    {
        Plan plan;
        plan.goTo(1, 1);
        plan.key(Qt::Key_Space, Qt::ShiftModifier);
        QCOMPARE(plan.view.selectionModel()->selectedRows().size(), 1);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 3);
        plan.goTo(1, 1);
        plan.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedColumns().size(), 1);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 4);
        plan.key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 12);
    }

    /// What keys do to a selection of cells, and that one undo takes it back.
    void edits_data()
    {
        QTest::addColumn<QRect>("selected");
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QStringList>("rows");
        const QString a = "a1|b1|c1";
        const QString b = "a2|b2|c2";
        const QString c = "a3|b3|c3";
        const QString d = "a4|b4|c4";
        const QString empty = "||";
        const auto row = [](const char* name, QRect selected, int code,
                            Qt::KeyboardModifiers modifiers, const QStringList& rows) {
            QTest::newRow(name) << selected << code << modifiers << rows;
        };
        row("clear", {1, 1, 2, 2}, Qt::Key_Delete, Qt::NoModifier, {a, "a2||", "a3||", d});
        row("cut", {0, 0, 1, 1}, Qt::Key_X, Qt::ControlModifier, {"|b1|c1", b, c, d});
        row("fill down", {0, 0, 2, 3}, Qt::Key_D, Qt::ControlModifier,
            {a, "a1|b1|c2", "a1|b1|c3", d});
        row("fill from above", {2, 1, 1, 1}, Qt::Key_D, Qt::ControlModifier, {a, "a2|b2|c1", c, d});
        row("insert a row", {0, 1, 1, 1}, Qt::Key_Plus, Qt::ControlModifier, {a, empty, b, c, d});
        row("insert two rows", {0, 1, 1, 2}, Qt::Key_Equal, Qt::ControlModifier,
            {a, empty, empty, b, c, d});
        row("remove a row", {1, 1, 1, 1}, Qt::Key_Minus, Qt::ControlModifier, {a, c, d});
        row("remove all rows", {0, 0, 3, 4}, Qt::Key_Minus, Qt::ControlModifier, {});
        row("row up", {1, 2, 1, 1}, Qt::Key_Up, Qt::AltModifier, {a, c, b, d});
        row("row down", {1, 0, 1, 2}, Qt::Key_Down, Qt::AltModifier, {c, a, b, d});
        row("column left", {1, 0, 1, 1}, Qt::Key_Left, Qt::AltModifier,
            {"b1|a1|c1", "b2|a2|c2", "b3|a3|c3", "b4|a4|c4"});
        row("column right", {1, 0, 1, 1}, Qt::Key_Right, Qt::AltModifier,
            {"a1|c1|b1", "a2|c2|b2", "a3|c3|b3", "a4|c4|b4"});
        row("disable", {0, 1, 1, 2}, Qt::Key_Slash, Qt::ControlModifier,
            {a, QLatin1Char('-') + b, QLatin1Char('-') + c, d});
    }

    void edits()
    {
        QFETCH(QRect, selected);
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QStringList, rows);
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(selected.top(), selected.left(), selected.bottom(), selected.right());
        plan.key(code, modifiers);
        QCOMPARE(plan.rows(), rows);
        QVERIFY(plan.document.isModified());
        const QStringList after = textOf(plan.model.plan());
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        QVERIFY(!plan.document.isModified());
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), after);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        plan.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(textOf(plan.model.plan()), after);
        QCOMPARE(plan.failures, QStringList());
    }

    void nothingMovesBeyondTheEdges()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(0, 0, 0, 0);
        plan.key(Qt::Key_Up, Qt::AltModifier);
        plan.key(Qt::Key_Left, Qt::AltModifier);
        plan.select(3, 2, 3, 2);
        plan.key(Qt::Key_Down, Qt::AltModifier);
        plan.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        QCOMPARE(plan.model.undoStack().count(), 0);
    }

    void aPlanWithoutRows()
    {
        Plan plan;
        plan.key(Qt::Key_A, Qt::ControlModifier);
        plan.key(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 0);
        QApplication::clipboard()->clear();
        for (const int code : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Delete, Qt::Key_F2})
            plan.key(code);
        for (const int code : {Qt::Key_C, Qt::Key_V, Qt::Key_X, Qt::Key_D, Qt::Key_Minus,
                               Qt::Key_Space, Qt::Key_Slash})
            plan.key(code, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 0);
        plan.key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(plan.model.rowCount(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        setForeign("text/plain", "only");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList("only||"));
    }

    void columns()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        plan.select(0, 1, 0, 1);
        actionOf(plan, "insertColumn")->trigger();
        QCOMPARE(plan.model.plan().headings, QStringList({"A", "Column 2", "B", "C"}));
        QCOMPARE(plan.rows().first(), QString("a1||b1|c1"));
        plan.select(0, 0, 0, 1);
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(textOf(plan.model.plan()).mid(0, 2), QStringList({"B|C", "b1|c1"}));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);

        plan.key(Qt::Key_A, Qt::ControlModifier);
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(textOf(plan.model.plan()), before);
        QCOMPARE(plan.failures, QStringList("A test plan needs at least one column."));
    }

    void renaming()
    {
        Plan plan;
        const auto doubleClick = [&plan](int section) {
            QHeaderView* const header = plan.view.horizontalHeader();
            const QPoint place(header->sectionViewportPosition(section) + 20, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, place);
            return header->viewport()->findChild<QLineEdit*>("headingField");
        };
        QLineEdit* field = doubleClick(1);
        QVERIFY(field);
        QCOMPARE(field->text(), QString("B"));
        QTest::keyClicks(field, "Current");
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(plan.model.plan().headings.at(1), QString("Current"));
        QCOMPARE(plan.model.undoStack().count(), 1);
        zvtest::closeFiles();

        field = doubleClick(2);
        QVERIFY(field);
        QTest::keyClicks(field, "lost");
        QTest::keyClick(field, Qt::Key_Escape);
        QCOMPARE(plan.model.plan().headings.at(2), QString("C"));
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.model.plan().headings.at(1), QString("B"));
    }

    void planMayBeClosedWhileAHeadingIsTyped()
    {
        QStringList renamed;
        {
            Plan plan;
            QObject::connect(&plan.model, &QAbstractItemModel::headerDataChanged, &plan.model,
                             [&renamed, &plan] { renamed = plan.model.plan().headings; });
            plan.view.renameHeading(1);
            auto* const field = plan.view.findChild<QLineEdit*>("headingField");
            QTest::keyClicks(field, "Current");
            QVERIFY(field->hasFocus());
        }
        QCOMPARE(renamed, QStringList());
    }

    void anotherHeadingKeepsTheFirstName()
    {
        Plan plan;
        plan.view.renameHeading(1);
        QTest::keyClicks(plan.view.findChild<QLineEdit*>("headingField"), "Current");
        plan.view.renameHeading(2);
        QCOMPARE(plan.model.plan().headings, QStringList({"A", "Current", "C"}));
    }

    void undoFollowsTheSavedState()
    {
        Plan plan;
        const QString file = m_dir.filePath("undo.testplan");
        plan.type("1");
        QTest::keyClick(plan.typed(), Qt::Key_Return);
        QVERIFY(plan.document.isModified());
        plan.document.saveAs(workbench::filePath(file));
        QVERIFY(!plan.document.isModified());
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(plan.document.isModified());
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!plan.document.isModified());
    }

    void manyRows()
    {
#ifdef ZV_SANITIZED
        const int rows = 2'000; // there each allocation takes long
#else
        const int rows = 100'000;
#endif
        const QString file = m_dir.filePath("many.testplan");
        TestPlan plan = planOf({"A", "Verdict"}, {});
        for (int row = 0; row < rows; ++row) {
            plan.rows.emplace_back();
            plan.rows.back().cells = {double(row), "pass"};
        }
        QVERIFY(savePlan(file, plan));
        zvtest::closeFiles();
        Plan shown;
        QVERIFY(shown.document.load(workbench::filePath(file)));
        QCOMPARE(shown.model.rowCount(), rows);
        QVERIFY(shown.activate());
        shown.key(Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(shown.current(), QPoint(1, rows - 1));
        shown.key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(shown.model.rowCount(), rows + 1);
        QCOMPARE(shown.at(rows, 0), QString::number(rows - 1));
    }

    /// What lies between blocks of a selection isn't touched.
    void blocksOfRows_data()
    {
        QTest::addColumn<QList<QRect>>("blocks");
        QTest::addColumn<int>("code");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("rows");
        const auto row = [](const char* name, const QList<QRect>& blocks, int code,
                            Qt::KeyboardModifiers modifiers, const char* rows) {
            QTest::newRow(name) << blocks << code << modifiers << QString::fromLatin1(rows);
        };
        const QList<QRect> two = {{0, 1, 3, 1}, {0, 4, 3, 2}};
        row("remove", two, Qt::Key_Minus, Qt::ControlModifier, "0 2 3 6 7");
        row("remove, selected upwards", {{1, 4, 1, 2}, {0, 1, 1, 1}}, Qt::Key_Minus,
            Qt::ControlModifier, "0 2 3 6 7");
        row("remove what touches", {{0, 4, 1, 1}, {1, 3, 1, 1}, {2, 0, 1, 1}, {2, 4, 1, 2}},
            Qt::Key_Minus, Qt::ControlModifier, "1 2 6 7");
        row("insert", two, Qt::Key_Plus, Qt::ControlModifier, "0  1 2 3   4 5 6 7");
        row("disable", two, Qt::Key_Slash, Qt::ControlModifier, "0 -1 2 3 -4 -5 6 7");
        row("up", two, Qt::Key_Up, Qt::AltModifier, "1 0 2 4 5 3 6 7");
        row("down", two, Qt::Key_Down, Qt::AltModifier, "0 2 1 3 6 4 5 7");
        row("down by one row between", {{0, 2, 1, 1}, {0, 4, 1, 1}}, Qt::Key_Down, Qt::AltModifier,
            "0 1 3 2 5 4 6 7");
        row("the first can't go up", {{0, 0, 1, 1}, {0, 4, 1, 1}}, Qt::Key_Up, Qt::AltModifier,
            "0 1 2 3 4 5 6 7");
        row("the last can't go down", {{0, 1, 1, 1}, {0, 7, 1, 1}}, Qt::Key_Down, Qt::AltModifier,
            "0 1 2 3 4 5 6 7");
    }

    void blocksOfRows()
    {
        QFETCH(QList<QRect>, blocks);
        QFETCH(int, code);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, rows);
        QStringList numbers;
        for (int row = 0; row < 8; ++row)
            numbers.append(QString("%1").arg(row));
        Plan plan(numbers);
        const QStringList before = plan.rows();
        selectBlocks(plan, blocks);
        plan.key(code, modifiers);
        QCOMPARE(firstsOf(plan), rows);
        const bool isChange = plan.rows() != before;
        QCOMPARE(plan.model.undoStack().count(), isChange ? 1 : 0);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.rows(), before);
        plan.key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(firstsOf(plan), rows);
    }

    void blocksOfRowsMoveOn()
    {
        Plan plan({"0", "1", "2", "3", "4", "5"});
        selectBlocks(plan, {{0, 0, 3, 1}, {0, 2, 3, 1}});
        for (int i = 0; i < 9; ++i)
            plan.key(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(firstsOf(plan), QString("1 3 4 0 5 2"));
        plan.key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(firstsOf(plan), QString("1 3 0 4 2 5"));
    }

    void blocksOfColumns()
    {
        Plan plan;
        plan.model.insertColumns(3, 2); // A B C 4 5
        const QStringList before = textOf(plan.model.plan());
        const auto headings = [&plan] { return plan.model.plan().headings.join(QLatin1Char('|')); };
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 0, 1, 4}, {3, 1, 1, 1}});
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(headings(), QString("B|Column 5"));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
        selectBlocks(plan, {{1, 0, 1, 1}, {3, 0, 1, 1}});
        plan.key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(headings(), QString("B|A|Column 4|C|Column 5"));
        plan.key(Qt::Key_Right, Qt::AltModifier);
        plan.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(headings(), QString("A|C|B|Column 5|Column 4"));
        plan.key(Qt::Key_Right, Qt::AltModifier); // the last is at the edge
        QCOMPARE(headings(), QString("A|C|B|Column 5|Column 4"));
        actionOf(plan, "insertColumn")->trigger();
        QCOMPARE(headings(), QString("A|C|Column 3|B|Column 5|Column 5|Column 4"));
        QCOMPARE(plan.failures, QStringList());
        selectBlocks(plan, {{0, 0, 3, 1}, {3, 2, 4, 1}});
        actionOf(plan, "removeColumn")->trigger();
        QCOMPARE(plan.failures, QStringList("A test plan needs at least one column."));
        QCOMPARE(plan.model.columnCount(), 7);
    }

    void wholeRowsAndColumnsOfBlocks()
    {
        Plan plan;
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 3, 1, 1}});
        plan.key(Qt::Key_Space, Qt::ShiftModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 6);
        QVERIFY(!plan.view.selectionModel()->isSelected(plan.model.index(1, 0)));
        selectBlocks(plan, {{0, 0, 1, 1}, {2, 3, 1, 1}});
        plan.key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(plan.view.selectionModel()->selectedIndexes().size(), 8);
        QVERIFY(!plan.view.selectionModel()->isSelected(plan.model.index(0, 1)));
    }

    /// Whatever would need more memory than a computer has is told before anything is done.
    void tooManyCellsAreRefused()
    {
        Plan plan({"a|b|c"});
        plan.model.insertRows(1, workbench::maxPlanRows - 1);
        plan.model.undoStack().clear();
        plan.key(Qt::Key_A, Qt::ControlModifier);
        plan.key(Qt::Key_D, Qt::ControlModifier);
        const QString reason = "No more than 5,000,000 cells can be changed at once.";
        QCOMPARE(plan.failures, QStringList(reason));
        setForeign("text/plain", "x");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures, QStringList({reason, reason}));
        QCOMPARE(plan.model.undoStack().count(), 0);
        QCOMPARE(plan.model.plan().rows.back().cells.size(), 0);
        // Here there are a few cells among many places.
        plan.key(Qt::Key_Delete);
        QCOMPARE(plan.failures.size(), 2);
        QCOMPARE(plan.model.undoStack().count(), 1);
        QCOMPARE(plan.at(0, 2), QString());
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.at(0, 2), QString("c"));
    }

    void fillingDownEmptiesBelowAnEmptyCell()
    {
        Plan plan({"a||c", "1|2|3", QString(), "|5"});
        plan.select(0, 0, 3, 2);
        plan.key(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList({"a||c", "a||c", "a||c", "a||c"}));
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(plan.rows().at(3), QString("|=5|"));
    }

private:
    static void selectBlocks(Plan& plan, const QList<QRect>& blocks)
    {
        plan.goTo(blocks.first().top(), blocks.first().left());
        for (const QRect& block : blocks) {
            const QItemSelection cells(plan.model.index(block.top(), block.left()),
                                       plan.model.index(block.bottom(), block.right()));
            plan.view.selectionModel()->select(cells, QItemSelectionModel::Select);
        }
    }

    /// The first cell of each row, with a "-" if it is disabled.
    static QString firstsOf(const Plan& plan)
    {
        QStringList firsts;
        for (const workbench::TestPlanRow& row : plan.model.plan().rows)
            firsts.append((row.isDisabled ? QString("-") : QString())
                          + workbench::cellText(row.cells.value(0)));
        return firsts.join(QLatin1Char(' '));
    }

    static QAction* actionOf(const Plan& plan, const char* name)
    {
        return plan.document.findChild<QAction*>(QString::fromLatin1(name));
    }
};

QTEST_MAIN(tst_workbench_testplan_edits)

#include "tst_workbench_testplan_edits.moc"
