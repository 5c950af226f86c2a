// Test plans of the workbench: the cells, what is typed into them, and the looks, through the real widgets.

#include "DocumentTest.h"
#include "Plan.h"
#include "common/style_options.h"

#include <zvutil/ZvStyleManager.h>

#include "common/path_names.h"
#include "support/BuiltInStyles.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"
#include "testplan/TestPlanDocument.h"
#include "testplan/TestPlanView.h"

#include <zvworkbench/FileError.h>

#include <QDir>
#include <QTest>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleManager;
using workbench::CellValue;
using workbench::TestPlanDocument;
using workbench::TestPlanModel;
using workbench::TestPlanView;
using zvtest::Plan;
using zvtest::planOf;
using zvtest::savePlan;

namespace {

QColor planColour(const char* brush)
{
    return ZvStyle::Current().editorColour("Testplan", brush);
}

QImage pictureOf(TestPlanView& view, int row, int column)
{
    const QRect cell = view.visualRect(view.model()->index(row, column));
    return view.viewport()->grab(cell).toImage();
}

} // namespace

class tst_workbench_testplan : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("isNumber");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* typed, bool isNumber, const char* shown) {
            QTest::newRow(typed) << QString::fromUtf8(typed) << isNumber
                                 << QString::fromUtf8(shown);
        };
        row("0", true, "0");
        row("5", true, "5");
        row("-12.5", true, "-12.5");
        row("1.50", true, "1.5");
        row("0.1", true, "0.1");
        row("1e3", true, "1000");
        row("1E-7", true, "1e-07");
        row("2.5e+20", true, "2.5e+20");
        row("123456789012345", true, "123456789012345");
        row("9007199254740993", false, "9007199254740993");
        row("12345678901234567890", false, "12345678901234567890");
        row("007", false, "007");
        row("1e999", false, "1e999");
        row("1e-999", false, "1e-999");
        row("1e99999999999", false, "1e99999999999");
        row("+1", false, "+1");
        row(".5", false, ".5");
        row("5.", false, "5.");
        row(" 5", false, " 5");
        row("5 ", false, "5 ");
        row("1,5", false, "1,5");
        row("1 000", false, "1 000");
        row("0x10", false, "0x10");
        row("inf", false, "inf");
        row("nan", false, "nan");
        row("-", false, "-");
        row("12 V", false, "12 V");
        row("5\n", false, "5\n");
    }

    void numbers()
    {
        QFETCH(QString, typed);
        QFETCH(bool, isNumber);
        QFETCH(QString, shown);
        const CellValue value = workbench::cellValue(typed);
        QCOMPARE(value.userType(), int(isNumber ? QMetaType::Double : QMetaType::QString));
        QCOMPARE(workbench::cellText(value), shown);
        if (isNumber)
            QCOMPARE(workbench::cellValue(shown).toDouble(), value.toDouble());
    }

    void nulsAndNothing()
    {
        QVERIFY(!workbench::cellValue(QString()).isValid());
        QVERIFY(!workbench::cellValue(QString(QChar())).isValid());
        QCOMPARE(workbench::cellValue(QString("a") + QChar() + QLatin1Char('b')).toString(),
                 QString("ab"));
    }

    void freshPlan()
    {
        TestPlanDocument document("New test plan", nullptr);
        QCOMPARE(document.model().plan().headings,
                 QStringList({"Step", "Instruction", "Input", "Expected", "Measured", "Verdict",
                              "Comment"}));
        QVERIFY(document.model().rowCount() > 5);
        QVERIFY(!document.isModified());
        QCOMPARE(document.toolBarActions().size(), 8);
        QCOMPARE(document.model().index(0, 0).data().toString(), QString());
    }

    void typing()
    {
        Plan plan;
        plan.type("new");
        QVERIFY(plan.typed());
        QTest::keyClick(plan.typed(), Qt::Key_Return);
        QCOMPARE(plan.at(0, 0), QString("new"));
        QCOMPARE(plan.current(), QPoint(0, 1));
        QVERIFY(plan.document.isModified());

        plan.key(Qt::Key_F2);
        QTest::keyClick(plan.typed(), Qt::Key_End);
        QTest::keyClick(plan.typed(), '7');
        QTest::keyClick(plan.typed(), Qt::Key_Enter, Qt::ShiftModifier);
        QCOMPARE(plan.at(1, 0), QString("a27"));
        QCOMPARE(plan.current(), QPoint(0, 0));

        plan.type("3.5");
        QTest::keyClick(plan.typed(), Qt::Key_Tab);
        QCOMPARE(plan.rows().first(), QString("=3.5|b1|c1"));
        QCOMPARE(plan.current(), QPoint(1, 0));

        plan.type("x");
        QTest::keyClick(plan.typed(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(plan.at(0, 1), QString("x"));
        QCOMPARE(plan.current(), QPoint(0, 0));

        plan.type("lost");
        QTest::keyClick(plan.typed(), Qt::Key_Escape);
        QCOMPARE(plan.at(0, 0), QString("3.5"));
        QCOMPARE(plan.model.undoStack().count(), 4);
    }

    void typingTheSameIsNoEdit()
    {
        Plan plan({"007|5|"});
        for (int column = 0; column < 3; ++column) {
            plan.goTo(0, column);
            plan.key(Qt::Key_F2);
            QTest::keyClick(plan.typed(), Qt::Key_Return);
        }
        QCOMPARE(plan.model.undoStack().count(), 0);
        QVERIFY(!plan.document.isModified());
    }

    void kindsOfRows()
    {
        Plan plan({"# comment|fail|", "// comment||", "1|Fail|", "2|ERROR|", "3|warn|",
                   "4|Warning|", "5|pass|fail", "/ 6|failed|"});
        plan.model.setHeaderData(1, Qt::Horizontal, QString("verdict"), Qt::EditRole);
        using Kind = TestPlanModel::RowKind;
        using Verdict = TestPlanModel::Verdict;
        const QVector<Verdict> verdicts = {Verdict::Plain, Verdict::Plain,   Verdict::Error,
                                           Verdict::Error, Verdict::Warning, Verdict::Warning,
                                           Verdict::Plain, Verdict::Plain};
        for (int row = 0; row < verdicts.size(); ++row) {
            QCOMPARE(plan.model.rowKind(row), row < 2 ? Kind::Comment : Kind::Plain);
            QCOMPARE(plan.model.verdict(plan.model.index(row, 1)), verdicts.at(row));
            QCOMPARE(plan.model.verdict(plan.model.index(row, 2)), Verdict::Plain);
        }
        plan.model.setRowsDisabled(0, 3, true);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(plan.model.rowKind(row), Kind::Disabled);
        QCOMPARE(plan.model.verdict(plan.model.index(2, 1)), Verdict::Plain);
        plan.model.setHeaderData(1, Qt::Horizontal, QString("Result"), Qt::EditRole);
        QCOMPARE(plan.model.verdict(plan.model.index(3, 1)), Verdict::Plain);
    }

    void numbersStandAtTheRight()
    {
        Plan plan({"1|a|007"});
        const auto alignment = [&plan](int column) {
            return plan.model.index(0, column).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight;
        };
        QVERIFY(alignment(0));
        QVERIFY(!alignment(1));
        QVERIFY(!alignment(2));
    }

    void coloursFollowTheStyle()
    {
        Plan plan({"1|fail|x", "2|warn|x", "# 3|fail|x", "4|fail|x", "5|pass|x"});
        plan.model.setHeaderData(1, Qt::Horizontal, QString("Verdict"), Qt::EditRole);
        plan.model.setRowsDisabled(3, 1, true);
        plan.goTo(4, 2);
        for (const char* const style : {"Light", "Dark"}) {
            zvtest::showPaintedStyle(style);
            const QColor field =
                ZvStyle::Current().colour(libzvutil::ZvStyleBrush::EditorEnabled).qColour();
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), planColour("ErrorBackground"))
                    > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), planColour("ErrorBorder")) > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 1, 1), planColour("WarningBackground"))
                    > 100);
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 1, 1), planColour("WarningBorder"))
                    > 100);
            for (const int row : {0, 2, 3, 4}) {
                const QImage cell = pictureOf(plan.view, row, 0);
                QVERIFY(zvtest::pixelsOf(cell, field) > cell.width() * cell.height() / 2);
            }
            QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 3, 0),
                                     workbench::pageTextColour(planColour("DisabledText")))
                    > 0);
            QCOMPARE(zvtest::pixelsOf(pictureOf(plan.view, 3, 1), planColour("ErrorBackground")),
                     0);
            QCOMPARE(zvtest::pixelsOf(pictureOf(plan.view, 4, 1), planColour("ErrorBackground")),
                     0);
        }
        ZvStyle changed = ZvStyle::Current().duplicate("Changed");
        changed.setEditorColour("Testplan", "ErrorBackground", QColor(1, 2, 3));
        ZvStyleManager::SetStyle(changed);
        QCoreApplication::processEvents();
        QVERIFY(zvtest::pixelsOf(pictureOf(plan.view, 0, 1), QColor(1, 2, 3)) > 100);
        zvtest::showPaintedStyle("Light");
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8().constData());
        TestPlanDocument document("Amplifier", nullptr);
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QVERIFY(document.load(workbench::filePath(EXAMPLES "/workbench/amplifier.testplan")));
        document.resize(1100, 620);
        document.show();
        TestPlanView& view = document.view();
        view.selectionModel()->setCurrentIndex(document.model().index(5, 4),
                                               QItemSelectionModel::ClearAndSelect);
        QCoreApplication::processEvents();
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(document.grab().save(QString(PICTURES "/testplan-%1.png").arg(style)));
        QVERIFY(zvtest::activate(document));
        static_cast<QAbstractItemView&>(view).edit(view.currentIndex());
        QVERIFY(document.grab().save(QString(PICTURES "/testplan-typing-%1.png").arg(style)));
        zvtest::showPaintedStyle("Light");
    }

    void commentsBeginWhereTheDirectionSays()
    {
        zvtest::showPaintedStyle("Light");
        Plan plan({"# a comment that needs more room than one column has||", "||"});
        plan.goTo(1, 0);
        for (int column = 0; column < 3; ++column)
            plan.view.setColumnWidth(column, 240);
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            plan.view.setLayoutDirection(direction);
            QCoreApplication::processEvents();
            const QRect first = plan.view.visualRect(plan.model.index(0, 0));
            const QRect end = direction == Qt::LeftToRight
                ? QRect(first.topLeft(), QSize(100, first.height()))
                : QRect(first.topRight() - QPoint(99, 0), QSize(100, first.height()));
            const QImage image = plan.view.viewport()->grab(end).toImage();
            QVERIFY2(zvtest::pixelsOf(image, workbench::pageTextColour(planColour("CommentText")))
                         > 0,
                     direction == Qt::LeftToRight ? "left to right" : "right to left");
        }
    }

    void whatTheUserHasWrittenIsNoPlaceholder()
    {
        const QString file = m_dir.filePath("placeholder.testplan");
        try {
            savePlan(file, planOf({"Vdd %2 %3"}, {QStringLiteral("a\x1f")}));
            QFAIL("it is saved");
        } catch (const workbench::FileError& error) {
            QCOMPARE(error.reason(),
                     QString("The cell in row 1, column “Vdd %2 %3”, contains a character that XML "
                             "does not allow: U+001f at position 2."));
        }
    }
};

QTEST_MAIN(tst_workbench_testplan)

#include "tst_workbench_testplan.moc"
