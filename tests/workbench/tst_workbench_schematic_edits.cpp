// Editing schematics of the workbench: moving, turning, deleting, the clipboard and undo.

#include "DocumentTest.h"
#include "Sheet.h"

#include "schematic/SymbolDialog.h"
#include "schematic/SymbolItem.h"
#include "schematic/WireItem.h"
#include "schematic/schematic_clipboard.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include <random>

using workbench::Failure;
using workbench::gridStep;
using workbench::Schematic;
using workbench::SchematicScene;
using workbench::Symbol;
using workbench::SymbolKind;
using workbench::Wire;
using zvtest::Sheet;
using zvtest::small;
using zvtest::symbolOf;
using zvtest::textOf;

namespace {

/// What stands in the way of OK, or "OK".
QString hintOf(const workbench::SymbolDialog& dialog)
{
    QString hint;
    for (const QLabel* const label : dialog.findChildren<QLabel*>())
        hint += label->wordWrap() ? label->text() : QString();
    const auto* const buttons = dialog.findChild<QDialogButtonBox*>();
    const bool isOk = buttons->button(QDialogButtonBox::Ok)->isEnabled();
    return hint + (isOk ? QString("OK") : QString());
}

} // namespace

using Points = QVector<QPoint>;
Q_DECLARE_METATYPE(Points)

class tst_workbench_schematic_edits : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void dragging()
    {
        Sheet sheet(small());
        sheet.drag({-5, 0}, {-7, 4});
        QCOMPARE(sheet.lines().first(), QString("Resistor R1 “” -7,4 0°"));
        QCOMPARE(sheet.edits(), 1);
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.drag({5, 0}, {6, -3});
        QCOMPARE(
            sheet.lines(),
            QStringList({"Resistor R1 “” -6,1 0°", "Resistor R2 “” 6,-3 0°", "-3,1 -3,-3 3,-3"}));
        QCOMPARE(sheet.edits(), 2);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), textOf(small()));
        // What is shown went back, too.
        for (const QGraphicsItem* const item : sheet.scene.items()) {
            const auto* const symbol = dynamic_cast<const workbench::SymbolItem*>(item);
            const QPoint step = symbol ? symbol->symbol().position : QPoint();
            QCOMPARE(item->pos(), QPointF(step * gridStep));
        }
    }

    void aClickMovesNothing()
    {
        Sheet sheet(small());
        sheet.click({-5, 0});
        QVERIFY(sheet.scene.selectedSymbol());
        QCOMPARE(sheet.scene.selectedSymbol()->reference, QString("R1"));
        QCOMPARE(sheet.edits(), 0);
        sheet.key(Qt::Key_Escape);
        QVERIFY(!sheet.scene.selectedSymbol());
    }

    void aRubberBandSelects()
    {
        Sheet sheet(small());
        sheet.drag({-10, -4}, {0, 4});
        QCOMPARE(sheet.scene.selectedItems().size(), 2); // a resistor and the wire
        sheet.drag({-10, -4}, {-1, 4});
        QCOMPARE(sheet.edits(), 0);
        sheet.click({0, 10});
        QVERIFY(sheet.scene.selectedItems().isEmpty());
    }

    void arrowKeys()
    {
        Sheet sheet(small());
        sheet.click({-5, 0});
        for (const int code :
             {Qt::Key_Left, Qt::Key_Left, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Up})
            sheet.key(code);
        QCOMPARE(sheet.lines().first(), QString("Resistor R1 “” -6,-1 0°"));
        QCOMPARE(sheet.edits(), 1);
        sheet.key(Qt::Key_Escape);
        sheet.key(Qt::Key_Left);
        QCOMPARE(sheet.edits(), 1);
    }

    void nothingLeavesTheSheet()
    {
        Schematic schematic;
        schematic.symbols = {symbolOf(SymbolKind::Chip, "U1", {workbench::farthestStep, 0}),
                             symbolOf(SymbolKind::Chip, "U2", {0, 0})};
        Sheet sheet(schematic);
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_Right);
        QCOMPARE(sheet.lines(), textOf(schematic));
        sheet.key(Qt::Key_C, Qt::ControlModifier);
        sheet.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(sheet.failures.size(), 1);
        QCOMPARE(sheet.edits(), 0);
        sheet.key(Qt::Key_Left);
        QCOMPARE(sheet.edits(), 1);
    }

    void rotating()
    {
        Schematic schematic = small();
        schematic.symbols.first().rotation = 270;
        Sheet sheet(schematic);
        sheet.click({-5, 0});
        sheet.key(Qt::Key_Space);
        QCOMPARE(sheet.lines().first(), QString("Resistor R1 “” -5,0 0°"));
        sheet.key(Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(sheet.lines().first(), QString("Resistor R1 “” -5,0 90°"));
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        const QStringList before = sheet.lines();
        sheet.key(Qt::Key_Space);
        QCOMPARE(
            sheet.lines(),
            QStringList({"Resistor R1 “” -5,0 180°", "Resistor R2 “” -5,10 90°", "-5,3 -5,7"}));
        for (int i = 0; i < 3; ++i)
            sheet.key(Qt::Key_Space);
        QCOMPARE(sheet.lines(), before);
    }

    void deleting()
    {
        Sheet sheet(small());
        sheet.click({0, 0}); // the wire
        sheet.key(Qt::Key_Delete);
        QCOMPARE(sheet.lines(), textOf(small()).mid(0, 2));
        sheet.key(Qt::Key_Delete);
        QCOMPARE(sheet.edits(), 1);
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_Delete);
        QCOMPARE(sheet.lines(), QStringList());
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), textOf(small()));
    }

    void copyAndPaste()
    {
        Sheet from(small());
        from.key(Qt::Key_A, Qt::ControlModifier);
        from.key(Qt::Key_C, Qt::ControlModifier);
        from.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(from.lines(),
                 QStringList({"Resistor R1 “” -5,0 0°", "Resistor R2 “” 5,0 0°",
                              "Resistor R3 “” -3,2 0°", "Resistor R4 “” 7,2 0°", "-2,0 2,0",
                              "0,2 4,2"}));
        QCOMPARE(from.scene.selectedItems().size(), 3);
        QCOMPARE(from.edits(), 1);
        from.key(Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(from.lines(), textOf(small()));

        Sheet to;
        to.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(to.lines(),
                 QStringList({"Resistor R1 “” -1,4 0°", "Resistor R2 “” 9,4 0°", "2,4 6,4"}));
        to.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(to.lines(), QStringList());
    }

    void whatCannotBePasted()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_C, Qt::ControlModifier);
        const QMimeData* const good = QApplication::clipboard()->mimeData();
        const QString format = good->formats().first();
        const QByteArray whole = good->data(format);
        for (int size = 0; size < whole.size(); ++size) {
            auto* const cut = new QMimeData;
            cut->setData(format, whole.left(size));
            QApplication::clipboard()->setMimeData(cut);
            sheet.scene.paste();
        }
        QCOMPARE(sheet.failures.size(), whole.size());
        for (int place = 0; place < whole.size(); ++place) {
            QByteArray bytes = whole;
            bytes[place] = char(bytes.at(place) ^ '\xff');
            auto* const changed = new QMimeData;
            changed->setData(format, bytes);
            QApplication::clipboard()->setMimeData(changed);
            Schematic part;
            if (workbench::readFromClipboard(part)) {
                for (const Symbol& symbol : part.symbols)
                    QVERIFY(workbench::isWithinReach(symbol.position));
                for (const Wire& wire : part.wires)
                    QCOMPARE(workbench::wireFault(wire.points), QString());
            }
        }
        QApplication::clipboard()->setText("text");
        sheet.scene.paste();
        QCOMPARE(sheet.failures.size(), whole.size() + 1);
        QCOMPARE(sheet.edits(), 0);
    }

    void editing_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("double click") << true;
        QTest::newRow("F2") << false;
    }

    void editing()
    {
        QFETCH(bool, byMouse);
        Sheet sheet(small());
        // Compared when the dialog has closed: a test that ended in it would wait for it forever.
        QStringList seen;
        zvtest::WindowResponder<workbench::SymbolDialog> answer(
            [&seen](workbench::SymbolDialog& dialog) {
                auto* const reference = dialog.findChild<QLineEdit*>("reference");
                for (const char* const typed : {"R2", "  ", "R9"}) {
                    seen.append(reference->text());
                    reference->setText(QString::fromLatin1(typed));
                    seen.append(hintOf(dialog));
                }
                dialog.findChild<QLineEdit*>("value")->setText("4.7 k");
                QTest::keyClick(reference, Qt::Key_Return);
                if (dialog.isVisible())
                    dialog.reject();
            });
        if (byMouse) {
            sheet.doubleClick({-5, 0});
        } else {
            sheet.click({-5, 0});
            sheet.key(Qt::Key_F2);
        }
        QCOMPARE(answer.count, 1);
        QCOMPARE(seen,
                 QStringList({"R1", "Another symbol is R2 already.", "R2",
                              "A symbol needs a reference.", "  ", "OK"}));
        QCOMPARE(sheet.lines().first(), QString("Resistor R9 “4.7 k” -5,0 0°"));
        QVERIFY(sheet.activate());
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), textOf(small()));
    }

    void editingNeedsOneSymbol()
    {
        Sheet sheet(small());
        QVERIFY(!sheet.action("editSymbol")->isEnabled());
        sheet.click({-5, 0});
        QVERIFY(sheet.action("editSymbol")->isEnabled());
        sheet.click({0, 0}); // a wire
        QVERIFY(!sheet.action("editSymbol")->isEnabled());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        QVERIFY(!sheet.action("editSymbol")->isEnabled());
    }

    void movesThatFollowEachOtherAreOneStep()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        for (int i = 0; i < 100; ++i)
            sheet.key(Qt::Key_Right);
        sheet.key(Qt::Key_Down);
        QCOMPARE(sheet.edits(), 1);
        const QStringList moved = sheet.lines();
        QCOMPARE(moved.first(), QString("Resistor R1 “” 95,1 0°"));
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), textOf(small()));
        sheet.key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), moved);
        // Other parts, and other edits, are steps of their own.
        sheet.scene.clearSelection();
        sheet.scene.items().first()->setSelected(true);
        sheet.scene.moveSelected({1, 0});
        QCOMPARE(sheet.edits(), 2);
        sheet.scene.rotate();
        sheet.scene.rotate();
        QCOMPARE(sheet.edits(), 4);
        sheet.scene.moveSelected({1, 0});
        sheet.scene.moveSelected({0, 1});
        QCOMPARE(sheet.edits(), 5);
    }

    void aMoveBackIsNoChange()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_Right);
        QVERIFY(sheet.document.isModified());
        sheet.key(Qt::Key_Left);
        QCOMPARE(sheet.edits(), 0);
        QVERIFY(!sheet.document.isModified());
        QCOMPARE(sheet.lines(), textOf(small()));
        // A file that has been saved between two moves has what was between them.
        sheet.key(Qt::Key_Right);
        sheet.scene.undoStack().setClean();
        sheet.key(Qt::Key_Left);
        QCOMPARE(sheet.edits(), 2);
        QVERIFY(sheet.document.isModified());
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!sheet.document.isModified());
    }

    void allEditsGoBackAndForth()
    {
        std::mt19937 random(20261122);
        const auto number = [&random](int below) { return int(random() % unsigned(below)); };
        workbench::copyToClipboard(small());
        SchematicScene scene;
        scene.setSchematic(small());
        QVector<QStringList> states = {textOf(scene.schematic())};
        for (int edit = 0; edit < 300; ++edit) {
            for (QGraphicsItem* const item : scene.items())
                item->setSelected(number(3) == 0);
            const int kind = number(10);
            if (kind < 4) {
                scene.moveSelected({number(5) - 2, number(5) - 2});
            } else if (kind < 6) {
                scene.rotate();
            } else if (kind == 6) {
                scene.removeSelected();
            } else if (kind == 7 && scene.selectedSymbol()) {
                scene.setTexts(scene.selectedSymbol()->id, QString::number(edit), QString());
            } else if (scene.items().size() < 40) {
                scene.paste();
            }
            states.resize(scene.undoStack().index() + 1);
            states.last() = textOf(scene.schematic());
        }
        QVERIFY(states.size() > 100);
        for (int step = states.size() - 2; step >= 0; --step) {
            scene.undoStack().undo();
            QCOMPARE(textOf(scene.schematic()), states.at(step));
        }
        for (int step = 1; step < states.size(); ++step) {
            scene.undoStack().redo();
            QCOMPARE(textOf(scene.schematic()), states.at(step));
        }
    }

    /// What is drawn can be read again once it has been saved.
    void nothingGoesBeyondTheLimits_data()
    {
        QTest::addColumn<bool>("isOfWires");
        QTest::newRow("symbols") << false;
        QTest::newRow("wires") << true;
    }

    void nothingGoesBeyondTheLimits()
    {
        QFETCH(bool, isOfWires);
        Schematic schematic;
        for (int i = 1; i < (isOfWires ? workbench::maxWires : workbench::maxSymbols); ++i) {
            const QPoint place(i % 300 * 10, i / 300 * 10);
            if (isOfWires)
                schematic.wires.append({0, {place, place + QPoint(1, 0)}});
            else
                schematic.symbols.append(symbolOf(SymbolKind::Ground, "GND1", place));
        }
        SchematicScene scene;
        QStringList failures;
        connect(&scene, &SchematicScene::failed, this,
                [&failures](const Failure& failure) { failures.append(failure.what); });
        scene.setSchematic(schematic);
        const auto draw = [&scene, isOfWires](int x) {
            if (isOfWires)
                scene.setTool(SchematicScene::Tool::Wire);
            else
                scene.setPlacing(SymbolKind::Chip);
            zvtest::clickOn(scene, {x, -9});
            if (isOfWires)
                zvtest::clickOn(scene, {x + 5, -9});
            scene.setTool(SchematicScene::Tool::Select);
        };
        draw(0);
        QCOMPARE(failures, QStringList());
        QCOMPARE(scene.undoStack().count(), 1);
        draw(20);
        const QString drawn =
            isOfWires ? QString("The wire was not drawn.") : QString("The symbol was not placed.");
        QCOMPARE(failures.value(0), drawn);
        Schematic part;
        if (isOfWires)
            part.wires = {{0, {{0, 0}, {9, 0}}}};
        else
            part.symbols = {symbolOf(SymbolKind::Chip, "U1", {0, 0})};
        workbench::copyToClipboard(part);
        scene.paste();
        QCOMPARE(failures.last(), QString("Nothing was pasted."));
        QCOMPARE(scene.undoStack().count(), 1);
        QVERIFY(scene.schematic().symbols.size() <= workbench::maxSymbols);
        QVERIFY(scene.schematic().wires.size() <= workbench::maxWires);
    }

    void pasteKeepsTheWireThatIsBeingDrawn()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.key(Qt::Key_C, Qt::ControlModifier);
        sheet.key(Qt::Key_W);
        sheet.click({-5, 8});
        sheet.click({5, 8});
        sheet.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(sheet.edits(), 2);
        QVERIFY(sheet.lines().contains("-5,8 5,8"));
        QCOMPARE(sheet.scene.selectedItems().size(), 3);
    }

    void wiresFollowSymbols_data()
    {
        QTest::addColumn<Points>("others"); // the wire from the pin of R1 is the first
        QTest::addColumn<Points>("wire");
        QTest::addColumn<QPoint>("steps");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* name, const Points& wire, const QPoint& steps,
                            const char* after, const Points& others = {}) {
            QTest::newRow(name) << others << wire << steps << QString(after);
        };
        // R1 is at 0,0 and has its pins at -3,0 and 3,0.
        row("longer", {{3, 0}, {8, 0}}, {-2, 0}, "1,0 8,0");
        row("shorter", {{3, 0}, {8, 0}}, {2, 0}, "5,0 8,0");
        row("beyond its other end", {{3, 0}, {8, 0}}, {9, 0}, "12,0 8,0");
        row("onto its other end", {{3, 0}, {8, 0}}, {5, 0}, "3,0 8,0");
        row("up", {{3, 0}, {8, 0}}, {0, -4}, "3,-4 3,0 8,0");
        row("aside", {{3, 0}, {8, 0}}, {1, 4}, "4,4 4,0 8,0");
        row("the corner slides", {{3, 0}, {8, 0}, {8, 5}}, {1, 2}, "4,2 8,2 8,5");
        row("the corner slides onto the end", {{3, 0}, {8, 0}, {8, 5}}, {0, 5}, "3,5 8,5");
        row("the other pin", {{-9, 0}, {-3, 0}}, {0, 2}, "-9,0 -3,0 -3,2");
        row("the other end", {{8, 5}, {8, 0}, {3, 0}}, {1, 2}, "8,5 8,2 4,2");
        row("what is met stays", {{3, 0}, {8, 0}, {8, 5}}, {0, 2}, "3,2 3,0 8,0 8,5",
            {{6, 0}, {6, -4}});
        row("a corner that is met stays", {{3, 0}, {8, 0}, {8, 5}}, {0, 2}, "3,2 3,0 8,0 8,5",
            {{8, 0}, {12, 0}});
        row("from pin to pin of one symbol", {{-3, 0}, {-3, -4}, {3, -4}, {3, 0}}, {2, 2},
            "-1,2 -1,-2 5,-2 5,2");
        row("no pin", {{4, 0}, {8, 0}}, {0, 2}, "4,0 8,0");
        row("over a pin", {{3, -4}, {3, 4}}, {0, 2}, "3,-4 3,4");
    }

    void wiresFollowSymbols()
    {
        QFETCH(Points, others);
        QFETCH(Points, wire);
        QFETCH(QPoint, steps);
        QFETCH(QString, after);
        Schematic schematic;
        schematic.symbols = {symbolOf(SymbolKind::Resistor, "R1", {0, 0})};
        schematic.wires.append({0, wire});
        if (!others.isEmpty())
            schematic.wires.append({0, others});
        for (const bool isByMouse : {true, false}) {
            Sheet sheet(schematic);
            const QStringList before = sheet.lines();
            if (isByMouse) {
                sheet.drag({0, 0}, steps);
            } else {
                sheet.click({0, 0});
                for (int x = 0; x < std::abs(steps.x()); ++x)
                    sheet.key(steps.x() > 0 ? Qt::Key_Right : Qt::Key_Left);
                for (int y = 0; y < std::abs(steps.y()); ++y)
                    sheet.key(steps.y() > 0 ? Qt::Key_Down : Qt::Key_Up);
            }
            QCOMPARE(sheet.lines().at(1), after);
            if (!others.isEmpty())
                QCOMPARE(sheet.lines().at(2), before.at(2));
            if (!isByMouse)
                continue;
            QCOMPARE(sheet.edits(), 1);
            sheet.key(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(sheet.lines(), before);
            sheet.key(Qt::Key_Y, Qt::ControlModifier);
            QCOMPARE(sheet.lines().at(1), after);
        }
    }

    void wiresAreShownAsTheyFollow()
    {
        Sheet sheet(zvtest::small());
        const auto shown = [&] {
            for (const QGraphicsItem* const item : sheet.scene.items()) {
                if (const auto* const wire = dynamic_cast<const workbench::WireItem*>(item))
                    return textOf(wire->wire().points.first()) + textOf(wire->wire().points.last());
            }
            return QString();
        };
        QCOMPARE(shown(), QString("-2,02,0"));
        QTest::mousePress(sheet.view.viewport(), Qt::LeftButton, {}, sheet.pixelOf({-5, 0}));
        sheet.moveMouse({-5, 3}, Qt::LeftButton);
        QCOMPARE(shown(), QString("-2,32,0"));
        // Back where it was, nothing has changed.
        sheet.moveMouse({-5, 0}, Qt::LeftButton);
        QCOMPARE(shown(), QString("-2,02,0"));
        QTest::mouseRelease(sheet.view.viewport(), Qt::LeftButton, {}, sheet.pixelOf({-5, 0}));
        QCOMPARE(shown(), QString("-2,02,0"));
        QCOMPARE(sheet.edits(), 0);
    }

    void aSymbolTakesNoWireAlongThatItPasses()
    {
        Schematic schematic;
        schematic.symbols = {symbolOf(SymbolKind::Ground, "GND1", {0, 0})};
        schematic.wires = {{0, {{2, 0}, {2, 5}}}};
        Sheet sheet(schematic);
        const auto select = [&sheet] {
            sheet.scene.clearSelection();
            for (QGraphicsItem* const item : sheet.scene.items())
                item->setSelected(dynamic_cast<workbench::SymbolItem*>(item));
        };
        select();
        for (int i = 0; i < 4; ++i)
            sheet.key(Qt::Key_Right);
        QCOMPARE(sheet.lines(), (QStringList{"Ground GND1 “” 4,0 0°", "2,0 2,5"}));
        QCOMPARE(sheet.edits(), 1);
        // A move that begins at the wire takes it along.
        sheet.key(Qt::Key_Left);
        sheet.key(Qt::Key_Left);
        select();
        sheet.key(Qt::Key_Up);
        QCOMPARE(sheet.lines(), (QStringList{"Ground GND1 “” 2,-1 0°", "2,-1 2,5"}));
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), (QStringList{"Ground GND1 “” 2,0 0°", "2,0 2,5"}));
    }

    void aMoveAfterOtherEditsBeginsAnew()
    {
        Sheet sheet(zvtest::small());
        sheet.click({-5, 0});
        sheet.key(Qt::Key_Down);
        const int steps = sheet.scene.undoStack().index();
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        sheet.scene.setTexts(sheet.scene.schematic().symbols.at(1).id, "R9", "1k");
        QCOMPARE(sheet.scene.undoStack().index(), steps);
        sheet.key(Qt::Key_Down);
        QCOMPARE(
            sheet.lines(),
            (QStringList{"Resistor R1 “” -5,1 0°", "Resistor R9 “1k” 5,0 0°", "-2,1 -2,0 2,0"}));
    }
};

QTEST_MAIN(tst_workbench_schematic_edits)

#include "tst_workbench_schematic_edits.moc"
