// Cells of test plans on the clipboard.

#include "DocumentTest.h"
#include "Plan.h"

#include <zvutil/ZvClipboard.h>

#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"
#include "testplan/TestPlanClipboard.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

using workbench::CellValue;
using zvtest::Plan;
using zvtest::setForeign;
using zvtest::textOf;

namespace {

QString plainText()
{
    return QApplication::clipboard()->mimeData()->text();
}

} // namespace

class tst_workbench_testplan_clipboard : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void copying()
    {
        Plan plan({"1.5|b1|c1", "a2|b, 2|c2"});
        plan.select(0, 0, 1, 1);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(plainText(), QString("1.5\tb1\na2\tb, 2"));
        QVERIFY(ZvClipboard().hasType(ZvInternalMimeType::table));
        QCOMPARE(ZvClipboard().tableData().value(0, 0).data(), QVariant(1.5));
        QCOMPARE(plan.model.undoStack().count(), 0);

        plan.select(0, 0, 0, 0);
        plan.view.selectionModel()->select(plan.model.index(1, 2), QItemSelectionModel::Select);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(plainText(), QString("1.5\t\t\n\t\tc2"));
    }

    void pastingOwnCells()
    {
        Plan plan({"1.5|007|", "||", "||"});
        plan.select(0, 0, 0, 1);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        plan.select(1, 1, 1, 1);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList({"=1.5|007|", "|=1.5|007", "||"}));
        plan.select(0, 0, 0, 0);
        plan.key(Qt::Key_C, Qt::ControlModifier);
        plan.select(1, 0, 2, 2);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList({"=1.5|007|", "=1.5|=1.5|=1.5", "=1.5|=1.5|=1.5"}));
        QCOMPARE(plan.model.undoStack().count(), 2);
    }

    void pasteGrowsThePlan()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        setForeign("text/plain", "1\t2\t3\n4\t5\t6\n");
        plan.select(3, 2, 3, 2);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.model.plan().headings, QStringList({"A", "B", "C", "Column 4", "Column 5"}));
        QCOMPARE(plan.rows().mid(3), QStringList({"a4|b4|=1|=2|=3", "||=4|=5|=6"}));
        QCOMPARE(plan.model.undoStack().count(), 1);
        plan.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(plan.model.plan()), before);
    }

    /// What other programs offer.
    void pastingForeign_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* name, const char* format, const QByteArray& bytes,
                            const QStringList& rows) {
            QTest::newRow(name) << QString::fromLatin1(format) << bytes << rows;
        };
        const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
        row("one word", "text/plain", "word", {text("word||"), text("||")});
        row("tabs", "text/plain", "1\tb\n007\td\n", {text("=1|b|"), text("007|d|")});
        row("Windows line ends", "text/plain", "1\tb\r\n2\td\r\n", {text("=1|b|"), text("=2|d|")});
        row("lines", "text/plain", "x\ny", {text("x||"), text("y||")});
        row("jagged", "text/plain", "x\ty\tz\nw", {text("x|y|z"), text("w||")});
        row("an empty cell at the end", "text/plain", "x\t\ny\t", {text("x||"), text("y||")});
        row("quoted line end", "text/plain", "\"a\nb\"\t\"c \"\"d\"\"\"",
            {text("a\nb|c \"d\"|"), text("||")});
        row("quotes of the text's own", "text/plain", "\"word\"\t\"open",
            {text("\"word\"|\"open|"), text("||")});
        row("CSV", "text/csv", "a,\"b, c\"\n7,8\n", {text("a|b, c|"), text("=7|=8|")});
        row("CSV of one column", "text/csv", "a\nb\n", {text("a||"), text("b||")});
        row("CSV beyond ASCII", "text/csv", "\xc2\xb5,\xce\xa9", {text("µ|Ω|"), text("||")});
    }

    void pastingForeign()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, rows);
        Plan plan({"||", "||"});
        setForeign(format, bytes);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), rows);
        QCOMPARE(plan.model.undoStack().count(), 1);
    }

    void tablesThatCannotBeRead()
    {
        Plan plan({"||"});
        auto* const data = new QMimeData;
        data->setData("text/csv", "a\nb,c,d\n");
        data->setData("text/plain", "text\tinstead");
        QApplication::clipboard()->setMimeData(data);
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.rows(), QStringList("text|instead|"));
        QCOMPARE(plan.failures, QStringList());

        for (const char* const bytes : {"a\nb,c,d\n", ""}) {
            setForeign("text/csv", bytes);
            plan.key(Qt::Key_V, Qt::ControlModifier);
        }
        setForeign("image/png", "picture");
        plan.key(Qt::Key_V, Qt::ControlModifier);
        // With nothing on the clipboard, the action can't be chosen.
        QApplication::clipboard()->clear();
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures.size(), 3);
        QCOMPARE(plan.rows(), QStringList("text|instead|"));
    }

    /// The size that is told beforehand is that of the library's table.
    void csvShapes_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<bool>("isReadable");
        const auto row = [](const char* csv, bool isReadable) {
            QTest::newRow(csv) << QByteArray(csv) << isReadable;
        };
        row("a", true);
        row("a,b", true);
        row("a,b\n", true);
        row("a,b\nc\n", true);
        row("a,b\nc,d,e\n", false);
        row("a\nb,c", false);
        row("\"a,b\"\nc\n", true);
        row("x\"a,b\"y,\"\"\"\n\"\nc,d", true);
        row("\"open\na,b,c", true);
        row("a,\"\"\"\"\nc,d,", false);
        row("\r\n,", false);
        row(",\r\n,\r\n", true);
    }

    void csvShapes()
    {
        QFETCH(QByteArray, csv);
        QFETCH(bool, isReadable);
        const workbench::CsvShape shape = workbench::csvShape(csv);
        QCOMPARE(shape.isReadable, isReadable);
        if (!isReadable)
            return;
        QMimeData data;
        data.setData("text/csv", csv);
        const ZvTable table = ZvClipboardData(&data).csvData();
        QCOMPARE(shape.rows, qint64(table.rows()));
        QCOMPARE(shape.columns, qint64(table.columns()));
    }

    void largePastesAskFirst()
    {
        Plan plan;
        setForeign("text/plain", QByteArray(1000, '\t') + '\n' + QByteArray("x\n").repeated(1000));
        zvtest::WindowResponder<QMessageBox> no(
            [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(no.count, 1);
        QCOMPARE(plan.model.undoStack().count(), 0);
        QVERIFY(plan.activate());
        zvtest::WindowResponder<QMessageBox> yes(
            [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(yes.count, 1);
        QCOMPARE(plan.model.rowCount(), 1001);
        QCOMPARE(plan.model.columnCount(), 1001);
        QCOMPARE(plan.failures, QStringList());
    }

    void clipboardMayChangeBeforeThePaste()
    {
        const auto goOn = [](int, int) { return true; };
        workbench::CellGrid own;
        own.rows = 1;
        own.columns = 2;
        own.cells = {"own", 1.0};
        workbench::copyToClipboard(own);
        const workbench::ClipboardCells table(goOn);
        setForeign("text/csv", "csv,2\n");
        const workbench::ClipboardCells csv(goOn);
        setForeign("text/plain", "text\t3");
        const workbench::ClipboardCells text(goOn);
        setForeign("text/plain", "another");
        using Cells = std::vector<CellValue>;
        QVERIFY(table.grid(goOn).cells == own.cells);
        QVERIFY(csv.grid(goOn).cells == (Cells{"csv", 2.0}));
        QVERIFY(text.grid(goOn).cells == (Cells{"text", 3.0}));
    }

    void pastingCanBeStopped_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("own table") << QString();
        QTest::newRow("csv") << "text/csv";
        QTest::newRow("text") << "text/plain";
    }

    void pastingCanBeStopped()
    {
        QFETCH(QString, format);
        if (format.isEmpty()) {
            workbench::CellGrid grid;
            grid.rows = 10'000;
            grid.columns = 1;
            grid.cells.resize(10'000);
            workbench::copyToClipboard(grid);
        } else {
            setForeign(format, QByteArray("1\n").repeated(10'000));
        }
        int asked = 0;
        const auto stop = [&asked](int done, int all) {
            ++asked;
            return done < all / 2;
        };
        QVERIFY_EXCEPTION_THROWN(workbench::ClipboardCells(stop).grid(stop), workbench::Stopped);
        QVERIFY(asked > 1);
    }

    void pastesBeyondAllMeasureAreRefused()
    {
        Plan plan;
        const QStringList before = textOf(plan.model.plan());
        const QByteArray wide = QByteArray(100'000, ',') + '\n';
        setForeign("text/csv", wide + QByteArray("x\n").repeated(100'000));
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QByteArray tabs = wide;
        setForeign("text/plain", tabs.replace(',', '\t') + QByteArray("x\n").repeated(100'000));
        // A box that shows progress may have been in front.
        QVERIFY(plan.activate());
        plan.key(Qt::Key_V, Qt::ControlModifier);
        setForeign("text/plain", tabs);
        QVERIFY(plan.activate());
        plan.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(plan.failures.size(), 3);
        QVERIFY(plan.failures.last().contains("columns"));
        QCOMPARE(textOf(plan.model.plan()), before);
    }
};

QTEST_MAIN(tst_workbench_testplan_clipboard)

#include "tst_workbench_testplan_clipboard.moc"
