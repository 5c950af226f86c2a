// The files of test plans.

#include "DocumentTest.h"
#include "Plan.h"

#include "common/path_names.h"
#include "documents/xml_text.h"
#include "support/Files.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"
#include "testplan/TestPlanReadFile.h"
#include "testplan/TestPlanSaveFile.h"
#include "testplan/csv_plan.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using workbench::CellValue;
using workbench::TestPlan;
using zvtest::Plan;
using zvtest::planOf;
using zvtest::savePlan;
using zvtest::textOf;

namespace {

TestPlan readPlan(const QString& file)
{
    TestPlan plan =
        workbench::TestPlanReadFile(workbench::filePath(file)).read([](int, int) { return true; });
    zvtest::closeFiles();
    return plan;
}

/// Has each box that shows progress come up at the second step, however quick the work is, and
/// presses its button once it is there.
class ImpatientUser : public QObject
{
public:
    ImpatientUser() { qApp->installEventFilter(this); }

    QStringList stopped; ///< the texts of the boxes

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = qobject_cast<QProgressDialog*>(watched);
        if (box && event->type() == QEvent::Show) {
            stopped.append(box->labelText());
            QMetaObject::invokeMethod(box->findChild<QPushButton*>(), "click",
                                      Qt::QueuedConnection);
        }
        hurry(qobject_cast<QProgressDialog*>(watched->parent()));
        return false;
    }

private:
    /// Nobody but its own parts can tell of a box that isn't shown yet.
    void hurry(QProgressDialog* box)
    {
        auto* const bar = box ? box->findChild<QProgressBar*>() : nullptr;
        if (!bar || bar == m_bar)
            return;
        m_bar = bar;
        connect(bar, &QProgressBar::valueChanged, box, [box] { box->setMinimumDuration(0); });
    }

    QPointer<QProgressBar> m_bar;
};

} // namespace

class tst_workbench_testplan_files : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void savingTakesWhatIsBeingTyped()
    {
        Plan plan;
        const QString file = m_dir.filePath("typed.testplan");
        plan.type("last");
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(readPlan(file).rows.front().cells.first().toString(), QString("last"));
        QVERIFY(!plan.document.isModified());
    }

    void closingAsksForWhatIsBeingTyped()
    {
        Plan plan;
        plan.type("last");
        zvtest::WindowResponder<QMessageBox> cancel(
            [](QMessageBox& box) { box.button(QMessageBox::Cancel)->click(); });
        QVERIFY(!plan.document.close());
        QCOMPARE(cancel.count, 1);
        QCOMPARE(plan.at(0, 0), QString("last"));
        QVERIFY(plan.activate());
        plan.model.undoStack().setClean();
        plan.view.renameHeading(2);
        QTest::keyClicks(plan.view.horizontalHeader()->viewport()->findChild<QLineEdit*>(), "Last");
        zvtest::WindowResponder<QMessageBox> again(
            [](QMessageBox& box) { box.button(QMessageBox::Cancel)->click(); });
        QVERIFY(!plan.document.close());
        QCOMPARE(again.count, 1);
        QCOMPARE(plan.model.plan().headings.last(), QString("Last"));
    }

    void filesComeBackAsTheyWere()
    {
        const QString file = m_dir.filePath("round.testplan");
        TestPlan plan = planOf({"A <&\">", QString(), "Ω\n"}, {"0.1|text|1e300", QString(), "||x"});
        const double odd[] = {1.0 / 3, -0.0, 5e-324, std::numeric_limits<double>::max(),
                              1e15,    1e-5};
        for (const double number : odd) {
            plan.rows.emplace_back();
            plan.rows.back().cells = {number};
            plan.rows.back().isDisabled = true;
        }
        plan.rows.emplace_back();
        plan.rows.back().cells = {" a\tb\r\nc  ", "5", QString::fromUtf8("\xf0\x9f\x94\x8c'")};
        QVERIFY(savePlan(file, plan));
        const TestPlan read = readPlan(file);
        QCOMPARE(textOf(read), textOf(plan));
        for (std::size_t row = 0; row < plan.rows.size(); ++row) {
            for (int column = 0; column < 3; ++column) {
                const CellValue before = plan.rows[row].cells.value(column);
                const CellValue after = read.rows[row].cells.value(column);
                QCOMPARE(after.userType(), before.userType());
                if (before.userType() == QMetaType::Double) {
                    QVERIFY(after.toDouble() == before.toDouble()); // not merely nearly
                    QCOMPARE(std::signbit(after.toDouble()), std::signbit(before.toDouble()));
                }
            }
        }
    }

    /// A file that breaks off anywhere is refused, or is all there.
    void brokenFilesAreRefused()
    {
        const QString file = m_dir.filePath("whole.testplan");
        const TestPlan plan = planOf({"A", "B"}, {"1|two", QString(), "|end"});
        QVERIFY(savePlan(file, plan));
        zvtest::closeFiles();
        const QByteArray whole = zvtest::contentOf(file);
        const QStringList expected = textOf(plan);
        const QString cut = m_dir.filePath("cut.testplan");
        int refused = 0;
        for (int size = 1; size < whole.size(); ++size) {
            QVERIFY(zvtest::writeTo(cut, whole.left(size)));
            try {
                QCOMPARE(textOf(readPlan(cut)), expected);
            } catch (const workbench::FileError& error) {
                QVERIFY(!error.reason().isEmpty());
                ++refused;
            }
        }
        const int lastRow = whole.indexOf("end\"");
        QVERIFY2(refused > lastRow, qPrintable(QString::number(refused)));
    }

    void wrongFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const char* bytes, const char* reason) {
            QTest::newRow(name) << QByteArray(bytes) << QString::fromUtf8(reason);
        };
        row("no XML", "Step,Instruction", "This is not an XML file.");
        row("another root", "<parts version='1'/>",
            "This is not a test plan (root element “parts”).");
        row("no version", "<testplan rows='0' columns='1'/>",
            "Element “testplan” has no attribute “version”.");
        row("newer", "<testplan version='2'/>", "newer version of this program");
        row("version 0", "<testplan version='0'/>", "Invalid format version “0”.");
        row("no rows", "<testplan version='1' columns='1'/>",
            "Element “testplan” has no attribute “rows”.");
        row("absurd rows", "<testplan version='1' rows='2000000001' columns='1'/>", "“2000000001”");
        row("too large for a number", "<testplan version='1' rows='99999999999999' columns='1'/>",
            "“99999999999999”");
        row("negative", "<testplan version='1' rows='-1' columns='1'/>", "“-1”");
        row("no columns", "<testplan version='1' rows='0' columns='0'/>",
            "Attribute “columns” of element “testplan” is “0”");
        row("claims much", "<testplan version='1' rows='2000000' columns='4096'/>",
            "The file ends after row 0 of 2000000");
        row("ends early",
            "<testplan version='1' rows='3' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "The file ends after row 1 of 3");
        row("row ends early",
            "<testplan version='1' rows='1' columns='2'><heading text='A'/><heading text='B'/>"
            "<row cells='2' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "The file ends after row 0 of 1");
        row("more rows",
            "<testplan version='1' rows='0' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='false'/></testplan>",
            "The file declares 0 rows but contains more.");
        row("more cells",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='false'><cell type='number' value='1'/></row></testplan>",
            "A row contains more cells than it declares.");
        row("more cells than columns",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='2' disabled='false'/></testplan>",
            "Attribute “cells” of element “row” is “2”");
        row("a cell of another type",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='date' value='1'/></row></testplan>",
            "type “date”");
        row("a number that is none",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='number' value='one'/></row></testplan>",
            "the invalid value “one”");
        row("no value",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='1' disabled='false'><cell type='text'/></row></testplan>",
            "Element “cell” has no attribute “value”.");
        row("something else",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/><macro/>",
            "Unexpected element “macro” (expected “row”).");
        row("disabled is neither",
            "<testplan version='1' rows='1' columns='1'><heading text='A'/>"
            "<row cells='0' disabled='maybe'/></testplan>",
            "“maybe”");
    }

    void wrongFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath("wrong.testplan");
        QVERIFY(zvtest::writeTo(file, bytes));
        Plan plan;
        plan.type("kept");
        plan.view.finishTyping();
        QVERIFY(!plan.document.load(workbench::filePath(file)));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains(reason), qPrintable(plan.failures.first()));
        QCOMPARE(plan.at(0, 0), QString("kept"));
        QVERIFY(plan.document.isModified());
        QVERIFY(plan.document.filename().isEmpty());
    }

    void anEmptyFileIsAFreshPlan()
    {
        const QString file = m_dir.filePath("empty.testplan");
        QVERIFY(zvtest::writeTo(file, QByteArray()));
        Plan plan;
        QVERIFY(plan.document.load(workbench::filePath(file)));
        QCOMPARE(textOf(plan.model.plan()), textOf(TestPlan::fresh()));
        QVERIFY(!plan.document.isModified());
    }

    void whatXmlDoesNotAllow_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("place");
        QTest::newRow("control") << QStringLiteral("ab\x01") << 2;
        QTest::newRow("high alone") << QString("a") + QChar(0xD800) << 1;
        QTest::newRow("low alone") << QString(QChar(0xDC00)) + QLatin1Char('a') << 0;
        QTest::newRow("no character") << QString(QChar(0xFFFE)) << 0;
        QTest::newRow("white space") << "\t\r\n" << -1;
        QTest::newRow("pair") << QString::fromUtf8("\xf0\x9f\x94\x8c") << -1;
    }

    void whatXmlDoesNotAllow()
    {
        QFETCH(QString, text);
        QFETCH(int, place);
        QCOMPARE(workbench::unwritableCharacter(text), place);
        if (place < 0)
            return;
        const QString file = m_dir.filePath("unwritable.testplan");
        QVERIFY(zvtest::writeTo(file, "as it was"));
        Plan plan;
        plan.model.setCells("Typing", {{1, 2, text}});
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().startsWith("The cell in row 2, column “C”,"),
                 qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QCOMPARE(zvtest::contentOf(file), QByteArray("as it was"));
    }

    void saveIntoAFolderThatIsNotThere()
    {
        Plan plan;
        plan.type("1");
        plan.document.saveAs(workbench::filePath(m_dir.filePath("missing/a.testplan")));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains("does not exist"),
                 qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QVERIFY(plan.document.filename().isEmpty());
    }

    void twoDocumentsAndAnOutsideChange()
    {
        const QString file = m_dir.filePath("shared.testplan");
        Plan first;
        first.document.saveAs(workbench::filePath(file));
        zvtest::closeFiles();
        Plan second;
        QVERIFY(second.document.load(workbench::filePath(file)));
        zvtest::closeFiles();
        QSignalSpy changed(&second.document, &DockableWidgetContents::fileChangedOutside);
        first.type("changed outside");
        first.view.finishTyping();
        QCOMPARE(second.at(0, 0), QString("a1"));
        first.document.save();
        QVERIFY(!first.document.isModified());
        QVERIFY(QTest::qWaitFor([&changed] { return !changed.isEmpty(); }, zvtest::longWait));
        second.view.setFocus();
        second.type("lost");
        second.view.finishTyping();
        second.document.reloadFile();
        QCOMPARE(second.at(0, 0), QString("changed outside"));
        QVERIFY(!second.document.isModified());
        QVERIFY(!second.model.undoStack().canUndo());
        QVERIFY(second.document.isFileWatcherEnabled());
    }

    void headingsThatXmlDoesNotAllow()
    {
        const QString file = m_dir.filePath("heading.testplan");
        try {
            savePlan(file, planOf({"A", QStringLiteral("\x02")}, {}));
            QFAIL("it is saved");
        } catch (const workbench::FileError& error) {
            QVERIFY2(error.reason().startsWith("The heading of column 2 contains"),
                     qPrintable(error.reason()));
        }
        QVERIFY(!QFile::exists(file));
    }

    void readingCanBeStopped()
    {
        const QString file = m_dir.filePath("stopped.testplan");
        TestPlan plan = planOf({"A"}, {});
        plan.rows.resize(2000);
        QVERIFY(savePlan(file, plan));
        int asked = 0;
        QVERIFY_EXCEPTION_THROWN(workbench::TestPlanReadFile(workbench::filePath(file))
                                     .read([&asked](int done, int all) {
                                         ++asked;
                                         return all == 2000 && done < 1000;
                                     }),
                                 workbench::Stopped);
        QVERIFY(asked > 1);
    }

    void savingCanBeStopped()
    {
        const QString file = m_dir.filePath("stopped.testplan");
        QVERIFY(zvtest::writeTo(file, "as it was"));
        TestPlan plan = planOf({"A"}, {});
        plan.rows.resize(2000);
        int asked = 0;
        QVERIFY_EXCEPTION_THROWN(workbench::TestPlanSaveFile(workbench::filePath(file))
                                     .save(plan,
                                           [&asked](int done, int all) {
                                               ++asked;
                                               return all == 2000 && done < 1000;
                                           }),
                                 workbench::Stopped);
        QVERIFY(asked > 1);
        QCOMPARE(zvtest::contentOf(file), QByteArray("as it was"));
    }

    void userStopsSaving()
    {
        const QString file = m_dir.filePath("user.testplan");
        Plan plan;
        QVERIFY(plan.model.insertRows(0, 5'000));
        const ImpatientUser user;
        plan.document.saveAs(workbench::filePath(file));
        QCOMPARE(user.stopped, QStringList("Saving “user.testplan”…"));
        QCOMPARE(plan.failures.size(), 1);
        QVERIFY2(plan.failures.first().contains("Stopped."), qPrintable(plan.failures.first()));
        QVERIFY(plan.document.isModified());
        QVERIFY(!QFile::exists(file));
    }

    /// Some disks give a file a longer name while it is written.
    void namesThatAreTooLongAreTold_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("reason");
        const QString tooLong = "The file name is too long for this disk.";
        const QString other = "The disk is full, or you do not have permission to write there.";
        QTest::newRow("at most") << 248 << other;
        QTest::newRow("too long to be written") << 249 << tooLong;
        QTest::newRow("too long at all") << 256 << tooLong;
    }

    void namesThatAreTooLongAreTold()
    {
        QFETCH(int, length);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath(QString(length, QLatin1Char('n')));
        try {
            workbench::requireWritten(false, workbench::filePath(file));
            QFAIL("it is written");
        } catch (const workbench::FileError& error) {
            QCOMPARE(error.reason(), reason);
        }
    }

    void csvIsReadWhole_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* name, const QByteArray& csv, const QStringList& rows) {
            QTest::newRow(name) << csv << rows;
        };
        row("empty", "", {"Column 1"});
        row("headings", "A,B\n1,x\n", {"A|B", "=1|x"});
        row("no headings", "1,2\n3,4", {"Column 1|Column 2", "=1|=2", "=3|=4"});
        row("an empty heading", "A,\n1,2\n", {"Column 1|Column 2", "A|", "=1|=2"});
        row("semicolons", "A;B\n1,5;2\n", {"A|B", "1,5|=2"});
        row("tabs", "A\tB\nx\ty, z\n", {"A|B", "x|y, z"});
        row("quotes", "A,B\n\"x, \"\"y\"\"\",\"two\nlines\"\n", {"A|B", "x, \"y\"|two\nlines"});
        row("quoted separator in the headings", "\"A;;;B\",C\n1,2\n", {"A;;;B|C", "=1|=2"});
        row("quotes within", "A,B\n5\" pipe,a\"b\"\n", {"A|B", "5\" pipe|a\"b\""});
        row("a quote that isn't closed", "A,B\n\"x,y\nz,w\n", {"A|B", "\"x|y", "z|w"});
        row("text behind a quote", "A,B\n\"x\"y,z\n", {"A|B", "\"x\"y|z"});
        row("blanks", "A,B\n  x ,\" y \"\n", {"A|B", "  x | y "});
        row("longer rows", "A,B\n1\n1,2,3\n", {"A|B|Column 3", "=1||", "=1|=2|=3"});
        row("a shorter last row", "A,B\n1,2\n3", {"A|B", "=1|=2", "=3|"});
        row("an empty row", "A,B\n\n1,2\n", {"A|B", "|", "=1|=2"});
        row("Windows", "A,B\r\n1,x\r\n", {"A|B", "=1|x"});
        row("byte order mark",
            "\xEF\xBB\xBF"
            "A,B\n1,x\n",
            {"A|B", "=1|x"});
        row("leading zeros", "A\n007\n", {"A", "007"});
        row("Latin-1", "A\ngr\xFC\xDF\n", {"A", QString::fromUtf8("grüß")});
    }

    void csvIsReadWhole()
    {
        QFETCH(QByteArray, csv);
        QFETCH(QStringList, rows);
        const workbench::CsvPlan read = workbench::planOfCsv(csv, [](int, int) { return true; });
        QCOMPARE(zvtest::textOf(read.plan), rows);
        QCOMPARE(read.isLatin1, csv.contains('\xFC'));
    }

    void csvThatIsNoneIsRefused_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<QString>("reason");
        QTest::newRow("NUL") << QByteArray("a,\0b", 4) << "It is not a text: it contains a NUL.";
        QTest::newRow("too many columns") << QByteArray(4'096, ',')
                                          << "The file has too many cells. A test plan can have "
                                             "2,000,000 rows and 4,096 columns, and "
                                             "5,000,000 cells can be read.";
    }

    void csvThatIsNoneIsRefused()
    {
        QFETCH(QByteArray, csv);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath("bad.csv");
        QVERIFY(zvtest::writeTo(file, csv));
        zvtest::Plan plan;
        const QStringList before = plan.rows();
        QVERIFY(!plan.document.importCsv(workbench::filePath(file)));
        QCOMPARE(plan.failures, QStringList(reason));
        QCOMPARE(plan.rows(), before);
    }
};

QTEST_MAIN(tst_workbench_testplan_files)

#include "tst_workbench_testplan_files.moc"
