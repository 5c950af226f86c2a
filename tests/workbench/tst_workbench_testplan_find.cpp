// Finding in test plans, and what the Edit menu does to them.

#include "DocumentTest.h"
#include "Plan.h"

#include "search/FindBar.h"
#include "support/AccessibleNames.h"
#include "support/BuiltInStyles.h"
#include "support/Files.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

using workbench::FindBar;
using zvtest::Plan;

namespace {

template <typename Child>
Child& childOf(const Plan& plan, const char* name)
{
    return *plan.document.findChild<Child*>(QLatin1String(name));
}

QString statusOf(const Plan& plan)
{
    return childOf<QLabel>(plan, "findStatus").text();
}

bool isEnabled(const Plan& plan, const char* name)
{
    return childOf<QAction>(plan, name).isEnabled();
}

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

constexpr auto ctrl = Qt::ControlModifier;

} // namespace

class tst_workbench_testplan_find : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void findsFromCellToCell()
    {
        Plan plan({"one one|x|12.5", "x|One", "x|y|one"});
        press(Qt::Key_F, ctrl);
        auto& field = childOf<QLineEdit>(plan, "findText");
        QVERIFY(field.hasFocus());
        QTest::keyClicks(&field, "one");
        QCOMPARE(plan.current(), QPoint(0, 0));
        press(Qt::Key_F3);
        QCOMPARE(plan.current(), QPoint(1, 1));
        press(Qt::Key_F3);
        QCOMPARE(plan.current(), QPoint(2, 2));
        press(Qt::Key_Return);
        QCOMPARE(plan.current(), QPoint(0, 0));
        QCOMPARE(statusOf(plan), QString("Continued from the beginning"));
        press(Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(plan.current(), QPoint(2, 2));
        QCOMPARE(statusOf(plan), QString("Continued from the end"));
        press(Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(plan.current(), QPoint(1, 1));
        field.setText("2.5");
        press(Qt::Key_F3);
        QCOMPARE(plan.current(), QPoint(2, 0));
        field.setText("nowhere");
        press(Qt::Key_F3);
        QCOMPARE(statusOf(plan), QString("No matches"));
        press(Qt::Key_Escape);
        QVERIFY(plan.view.hasFocus());
        QCOMPARE(plan.edits(), 0);
    }

    void whatIsTypedIsSearchedToo()
    {
        Plan plan;
        plan.goTo(1, 1);
        plan.type("needle");
        QVERIFY(plan.typed());
        press(Qt::Key_F, ctrl);
        QVERIFY(!plan.typed());
        QCOMPARE(plan.at(1, 1), QString("needle"));
        QTest::keyClicks(QApplication::focusWidget(), "eedl");
        QCOMPARE(plan.current(), QPoint(1, 1));
        QCOMPARE(statusOf(plan), QString());
    }

    void replacesCellByCell()
    {
        Plan plan({"1|a1|11", "x|1"});
        press(Qt::Key_H, ctrl);
        childOf<QLineEdit>(plan, "findText").setText("1");
        childOf<QLineEdit>(plan, "replacement").setText("2");
        auto& one = childOf<QPushButton>(plan, "replaceOne");
        one.click();
        QCOMPARE(plan.rows(), (QStringList{"=2|a1|=11", "x|=1|"}));
        QCOMPARE(plan.current(), QPoint(1, 0));
        one.click();
        one.click();
        QCOMPARE(plan.rows(), (QStringList{"=2|a2|=22", "x|=1|"}));
        plan.model.undoStack().undo();
        QCOMPARE(plan.rows(), (QStringList{"=2|a2|=11", "x|=1|"}));
    }

    void replacesAllInOneStep()
    {
        Plan plan({"1|a1|11", "x|1"});
        press(Qt::Key_H, ctrl);
        childOf<QLineEdit>(plan, "findText").setText("1");
        childOf<QLineEdit>(plan, "replacement").setText("0");
        childOf<QPushButton>(plan, "replaceAll").click();
        // "00" isn't how a number is written.
        QCOMPARE(plan.rows(), (QStringList{"=0|a0|00", "x|=0|"}));
        QCOMPARE(statusOf(plan), QString("5 matches replaced"));
        QCOMPARE(plan.edits(), 1);
        press(Qt::Key_Escape);
        press(Qt::Key_Z, ctrl);
        QCOMPARE(plan.rows(), (QStringList{"=1|a1|=11", "x|=1|"}));
        QVERIFY(!plan.document.isModified());
    }

    void keysOfTheTableDoNothingInTheBar()
    {
        Plan plan;
        press(Qt::Key_F, ctrl);
        QTest::keyClicks(QApplication::focusWidget(), "a");
        const QStringList before = plan.rows();
        press(Qt::Key_Minus, ctrl);
        press(Qt::Key_Plus, ctrl);
        press(Qt::Key_Plus, ctrl | Qt::ShiftModifier);
        press(Qt::Key_D, ctrl);
        press(Qt::Key_Down, Qt::AltModifier);
        press(Qt::Key_Delete);
        QCOMPARE(plan.rows(), before);
        QCOMPARE(plan.edits(), 0);
    }

    void emptyPlansAreSearched()
    {
        Plan plan;
        plan.model.removeRows(0, 4);
        press(Qt::Key_F, ctrl);
        QTest::keyClicks(QApplication::focusWidget(), "a");
        press(Qt::Key_F3);
        QCOMPARE(statusOf(plan), QString("No matches"));
        press(Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(statusOf(plan), QString("No matches"));
        press(Qt::Key_H, ctrl);
        childOf<QPushButton>(plan, "replaceOne").click();
        childOf<QPushButton>(plan, "replaceAll").click();
        QCOMPARE(statusOf(plan), QString("No matches"));
    }

    void goesToARow()
    {
        Plan plan;
        const zvtest::WindowResponder<QInputDialog> answer([](QInputDialog& dialog) {
            auto* const field = dialog.findChild<QSpinBox*>();
            field->setValue(3);
            QTest::keyClick(field, Qt::Key_Return);
        });
        press(Qt::Key_G, ctrl);
        QCOMPARE(answer.count, 1);
        QCOMPARE(plan.current(), QPoint(0, 2));
    }

    void hitsInTheFileAreShown()
    {
        Plan plan;
        const QString file = m_dir.filePath("lines.testplan");
        plan.document.saveAs(workbench::filePath(file));
        // All of it is one line, as it is saved here.
        plan.document.showHit(1, "B3");
        QCOMPARE(plan.current(), QPoint(1, 2));
        press(Qt::Key_F3);
        QCOMPARE(statusOf(plan), QString("Continued from the beginning"));
        plan.document.showHit(1, "element");
        QCOMPARE(plan.current(), QPoint(0, 0));
        // Another program may have written a line for each row.
        QByteArray lines = zvtest::contentOf(file);
        lines.replace("<row ", "\n<row ");
        QVERIFY(zvtest::writeTo(file, lines));
        plan.document.showHit(4, "row");
        QCOMPARE(plan.current(), QPoint(0, 2));
        plan.document.showHit(1'000, "a");
        QCOMPARE(plan.current(), QPoint(0, 3));
    }

    void theCurrentCellIsToldOf()
    {
        Plan plan;
        plan.action("disableRows").trigger();
        QVERIFY(plan.action("disableRows").isChecked());
        QSignalSpy moved(&plan.view, &workbench::TestPlanView::selectionMoved);
        plan.view.selectionModel()->setCurrentIndex(plan.model.index(2, 0),
                                                    QItemSelectionModel::NoUpdate);
        QVERIFY(!moved.isEmpty());
        QVERIFY(!plan.action("disableRows").isChecked());
    }

    void actionsAreEnabledRightly()
    {
        QApplication::clipboard()->clear();
        Plan plan;
        QVERIFY(!isEnabled(plan, "paste"));
        for (const char* const name : {"cut", "copy", "clear", "selectAll"})
            QVERIFY2(isEnabled(plan, name), name);
        plan.action("copy").trigger();
        QVERIFY(isEnabled(plan, "paste"));
        plan.model.removeRows(0, 4);
        for (const char* const name : {"cut", "copy", "clear"})
            QVERIFY2(!isEnabled(plan, name), name);
    }

    void theMenuIsAboutTheFieldWhileTheUserTypes()
    {
        Plan plan;
        plan.type("typed");
        plan.action("selectAll").trigger();
        plan.action("cut").trigger();
        QVERIFY(plan.typed());
        QCOMPARE(plan.typed()->text(), QString());
        QCOMPARE(QApplication::clipboard()->text(), QString("typed"));
        plan.action("paste").trigger();
        plan.action("paste").trigger();
        plan.key(Qt::Key_Escape);
        press(Qt::Key_Return);
        QCOMPARE(plan.at(0, 0), QString("typedtyped"));
    }

    void allThatHasTheFocusIsNamed()
    {
        Plan plan;
        plan.type("typed");
        QCOMPARE(plan.typed()->accessibleName(), QString("Cell A1"));
        QCOMPARE(zvtest::unnamedIn(plan.document), QStringList());
        press(Qt::Key_Return);
        press(Qt::Key_H, ctrl);
        QCOMPARE(zvtest::unnamedIn(plan.document), QStringList());
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8());
        Plan plan;
        press(Qt::Key_H, ctrl);
        QTest::keyClicks(QApplication::focusWidget(), "b3");
        QVERIFY(plan.document.grab().save(
            QString(PICTURES "/workbench-find-in-plan-%1.png").arg(style)));
        zvtest::showPaintedStyle("Light");
    }
};

QTEST_MAIN(tst_workbench_testplan_find)
#include "tst_workbench_testplan_find.moc"
