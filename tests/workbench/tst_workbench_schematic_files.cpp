// The files of schematics.

#include "DocumentTest.h"
#include "Sheet.h"

#include "common/path_names.h"
#include "schematic/SchematicReadFile.h"
#include "schematic/SchematicSaveFile.h"
#include "support/Files.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <zvworkbench/FileError.h>

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using workbench::Schematic;
using workbench::SymbolKind;
using zvtest::Sheet;
using zvtest::small;
using zvtest::symbolOf;
using zvtest::textOf;

namespace {

bool goOn(int /*done*/, int /*all*/)
{
    return true;
}

Schematic readSchematic(const QString& file)
{
    Schematic schematic = workbench::SchematicReadFile(workbench::filePath(file)).read(goOn);
    zvtest::closeFiles();
    return schematic;
}

} // namespace

class tst_workbench_schematic_files : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void filesComeBackAsTheyWere()
    {
        Schematic schematic = small();
        for (const SymbolKind kind : workbench::symbolKinds) {
            for (const int rotation : {0, 90, 180, 270})
                schematic.symbols.append(
                    symbolOf(kind, "X<&\">", {workbench::farthestStep, -rotation}, rotation));
        }
        schematic.symbols.first().value = QString::fromUtf8("4.7 µF\n'x'");
        schematic.wires.append(
            {0, {{0, 0}, {0, -workbench::farthestStep}, {9, -workbench::farthestStep}}});
        const QString file = m_dir.filePath("round.zvsch");
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, goOn));
        QCOMPARE(textOf(readSchematic(file)), textOf(schematic));
    }

    /// A file that breaks off anywhere is refused, or is all there.
    void brokenFilesAreRefused()
    {
        const QString file = m_dir.filePath("whole.zvsch");
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(small(), goOn));
        zvtest::closeFiles();
        const QByteArray whole = zvtest::contentOf(file);
        const QString cut = m_dir.filePath("cut.zvsch");
        int refused = 0;
        for (int size = 1; size < whole.size(); ++size) {
            QVERIFY(zvtest::writeTo(cut, whole.left(size)));
            try {
                QCOMPARE(textOf(readSchematic(cut)), textOf(small()));
            } catch (const workbench::FileError& error) {
                QVERIFY(!error.reason().isEmpty());
                ++refused;
            }
        }
        QVERIFY2(refused > whole.lastIndexOf("<point"), qPrintable(QString::number(refused)));
    }

    void wrongFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, const QByteArray& bytes, const char* reason) {
            QTest::newRow(name) << bytes << QString::fromUtf8(reason);
        };
        const auto symbol = [](const char* attributes) {
            return QByteArray("<schematic version='1' symbols='1' wires='0'><symbol ") + attributes
                + "/></schematic>";
        };
        const auto wire = [](const char* content) {
            return QByteArray("<schematic version='1' symbols='0' wires='1'>") + content
                + "</schematic>";
        };
        row("no XML", "R1", "This is not an XML file.");
        row("another root", "<testplan version='1'/>",
            "This is not a schematic (root element “testplan”).");
        row("newer", "<schematic version='7'/>", "newer version");
        row("no counts", "<schematic version='1'/>",
            "Element “schematic” has no attribute “symbols”.");
        row("absurd count", "<schematic version='1' symbols='2000000000' wires='0'/>",
            "“2000000000”");
        row("claims much", "<schematic version='1' symbols='100000' wires='0'/>",
            "The file ends after symbol 0 of 100000");
        row("no wires", "<schematic version='1' symbols='0' wires='2'/>",
            "The file ends after wire 0 of 2");
        row("more symbols",
            "<schematic version='1' symbols='0' wires='0'>"
            "<symbol kind='Chip' ref='U1' value='' x='0' y='0' rotation='0'/></schematic>",
            "The file contains more symbols or wires than it declares.");
        row("unknown kind", symbol("kind='Coil' ref='L1' value='' x='0' y='0' rotation='0'"),
            "Unknown symbol kind “Coil”.");
        row("too far", symbol("kind='Chip' ref='U1' value='' x='1000001' y='0' rotation='0'"),
            "Attribute “x” of element “symbol” is “1000001”");
        row("too far the other way",
            symbol("kind='Chip' ref='U1' value='' x='0' y='-1000001' rotation='0'"),
            "Attribute “y” of element “symbol” is “-1000001”");
        row("between steps", symbol("kind='Chip' ref='U1' value='' x='0.5' y='0' rotation='0'"),
            "Attribute “x” of element “symbol” is “0.5”");
        row("turned by half", symbol("kind='Chip' ref='U1' value='' x='0' y='0' rotation='45'"),
            "rotated by 45 degrees");
        row("turned too far", symbol("kind='Chip' ref='U1' value='' x='0' y='0' rotation='360'"),
            "Attribute “rotation” of element “symbol” is “360”");
        row("no reference", symbol("kind='Chip' value='' x='0' y='0' rotation='0'"),
            "Element “symbol” has no attribute “ref”.");
        row("one point", wire("<wire points='1'><point x='0' y='0'/></wire>"),
            "Attribute “points” of element “wire” is “1”");
        row("points missing", wire("<wire points='2'><point x='0' y='0'/></wire>"),
            "The file ends after wire 0 of 1");
        row("points left",
            wire("<wire points='2'><point x='0' y='0'/><point x='1' y='0'/><point x='2' "
                 "y='0'/></wire>"),
            "A wire contains more points than it declares.");
        row("not straight",
            wire("<wire points='2'><point x='0' y='0'/><point x='1' y='1'/></wire>"),
            "A wire is neither horizontal nor vertical from point 1");
        row("no way", wire("<wire points='2'><point x='0' y='0'/><point x='0' y='0'/></wire>"),
            "A wire is neither horizontal nor vertical from point 1");
        row("something else", wire("<bus/>"), "Unexpected element “bus” (expected “wire”).");
    }

    void wrongFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath("wrong.zvsch");
        QVERIFY(zvtest::writeTo(file, bytes));
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_Left);
        const QStringList before = sheet.lines();
        QVERIFY(!sheet.document.load(workbench::filePath(file)));
        QCOMPARE(sheet.failures.size(), 1);
        QVERIFY2(sheet.failures.first().contains(reason), qPrintable(sheet.failures.first()));
        QCOMPARE(sheet.lines(), before);
        QVERIFY(sheet.document.isModified());
    }

    void anEmptyFileIsAnEmptySheet()
    {
        const QString file = m_dir.filePath("empty.zvsch");
        QVERIFY(zvtest::writeTo(file, QByteArray()));
        Sheet sheet(small());
        QVERIFY(sheet.document.load(workbench::filePath(file)));
        QCOMPARE(sheet.lines(), QStringList());
    }

    void savesThatFail()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_Left);
        sheet.document.saveAs(workbench::filePath(m_dir.filePath("missing/a.zvsch")));
        QCOMPARE(sheet.failures.size(), 1);
        QVERIFY(sheet.failures.last().contains("does not exist"));
        QVERIFY(sheet.document.isModified());

        const QString file = m_dir.filePath("unwritable.zvsch");
        sheet.scene.setTexts(sheet.scene.schematic().symbols.first().id, "R1",
                             QStringLiteral("\x02"));
        sheet.document.saveAs(workbench::filePath(file));
        QVERIFY2(sheet.failures.last().startsWith("The value of R1"),
                 qPrintable(sheet.failures.last()));
        QVERIFY(sheet.document.isModified());
        QVERIFY(!QFile::exists(file));
    }

    /// None of it may take a step for each pair of parts: that would be minutes.
    void manyParts()
    {
#ifdef ZV_SANITIZED
        const int count = 5'000; // there each allocation takes long
#else
        const int count = 20'000;
#endif
        Schematic schematic;
        for (int i = 0; i < count; ++i) {
            const QPoint place(i % 200 * 10, i / 200 * 10);
            schematic.symbols.append(symbolOf(SymbolKind::Resistor, "R", place));
            schematic.symbols.last().reference += QString::number(i + 1);
            schematic.wires.append({0, {place + QPoint(2, 0), place + QPoint(8, 0)}});
        }
        Sheet sheet(schematic);
        const QStringList before = sheet.lines();
        int selections = 0;
        connect(&sheet.scene, &QGraphicsScene::selectionChanged, this, [&] { ++selections; });
        sheet.scene.selectAll();
        QCOMPARE(sheet.scene.selectedItems().size(), 2 * count);
        QCOMPARE(selections, 1);
        sheet.scene.copy();
        QCoreApplication::processEvents();
        sheet.scene.removeSelected();
        QCOMPARE(sheet.scene.selectedItems().size(), 0);
        QCOMPARE(sheet.lines(), QStringList());
        sheet.scene.undoStack().undo();
        QCOMPARE(sheet.lines(), before);
        QCoreApplication::processEvents();
        selections = 0;
        sheet.scene.paste();
        QVERIFY2(selections < 10, qPrintable(QString::number(selections)));
        QCOMPARE(sheet.scene.selectedItems().size(), 2 * count);
        QCOMPARE(sheet.scene.schematic().symbols.last().reference, QString("R%1").arg(2 * count));
        QCoreApplication::processEvents();
        sheet.scene.undoStack().undo();
        QCOMPARE(sheet.lines(), before);
    }

    void filesCanBeStopped_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("symbols") << 1'000;
        QTest::newRow("wires") << 2'500;
    }

    void filesCanBeStopped()
    {
        QFETCH(int, end);
        const QString file = m_dir.filePath("stopped.zvsch");
        Schematic schematic;
        schematic.symbols.fill(symbolOf(SymbolKind::Chip, "U", {0, 0}, 0), 2'000);
        schematic.wires.fill({0, {{0, 0}, {0, 1}}}, 1'000);
        const auto stop = [end](int done, int all) { return all == 3'000 && done < end; };
        QVERIFY(zvtest::writeTo(file, "as it was"));
        QVERIFY_EXCEPTION_THROWN(
            workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, stop),
            workbench::Stopped);
        QCOMPARE(zvtest::contentOf(file), QByteArray("as it was"));
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, goOn));
        QVERIFY_EXCEPTION_THROWN(workbench::SchematicReadFile(workbench::filePath(file)).read(stop),
                                 workbench::Stopped);
        zvtest::closeFiles();
    }

    void twoDocumentsAndAnOutsideChange()
    {
        const QString file = m_dir.filePath("shared.zvsch");
        Sheet first(small());
        first.document.saveAs(workbench::filePath(file));
        zvtest::closeFiles();
        Sheet second;
        QVERIFY(second.document.load(workbench::filePath(file)));
        zvtest::closeFiles();
        QCOMPARE(second.lines(), first.lines());
        QSignalSpy changed(&second.document, &DockableWidgetContents::fileChangedOutside);
        QVERIFY(first.activate());
        // The file gets another size, since its time may be the same.
        first.key(Qt::Key_R);
        first.click({0, 9});
        first.key(Qt::Key_Escape);
        QVERIFY(first.document.isModified());
        first.document.save();
        QVERIFY(!first.document.isModified());
        first.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(first.document.isModified());
        first.key(Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!first.document.isModified());
        QVERIFY(QTest::qWaitFor([&changed] { return !changed.isEmpty(); }, zvtest::longWait));
        second.document.reloadFile();
        QCOMPARE(second.lines(), first.lines());
        QVERIFY(!second.scene.undoStack().canUndo());
    }
};

QTEST_MAIN(tst_workbench_schematic_files)

#include "tst_workbench_schematic_files.moc"
