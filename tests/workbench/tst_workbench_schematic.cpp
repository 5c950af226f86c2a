// Schematics of the workbench: drawing with mouse and keys, and the looks, through the real widgets.

#include "DocumentTest.h"
#include "Sheet.h"

#include <zvutil/ZvStyle.h>

#include "common/path_names.h"
#include "schematic/SymbolDialog.h"
#include "schematic/schematic_clipboard.h"
#include "support/AccessibleNames.h"
#include "support/BuiltInStyles.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QGraphicsItem>
#include <QLabel>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <algorithm>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using workbench::Schematic;
using workbench::SchematicScene;
using workbench::Symbol;
using workbench::SymbolKind;
using workbench::Wire;
using zvtest::Sheet;
using zvtest::small;
using zvtest::symbolOf;

namespace {

QColor colourOf(ZvStyleBrush brush)
{
    return ZvStyle::Current().colour(brush).qColour();
}

} // namespace

/// The children that have had the focus, as screen readers are told.
static QVector<int> s_told;

class tst_workbench_schematic : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void placing_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reference");
        const auto row = [](int code, const char* kind, const char* reference) {
            QTest::newRow(kind) << code << QString::fromLatin1(kind)
                                << QString::fromLatin1(reference);
        };
        row(Qt::Key_R, "Resistor", "R");
        row(Qt::Key_C, "Capacitor", "C");
        row(Qt::Key_D, "Diode", "D");
        row(Qt::Key_S, "Source", "V");
        row(Qt::Key_G, "Ground", "GND");
        row(Qt::Key_U, "Chip", "U");
    }

    void placing()
    {
        QFETCH(int, code);
        QFETCH(QString, kind);
        QFETCH(QString, reference);
        Sheet sheet;
        sheet.key(code);
        QVERIFY(sheet.document.findChild<QAction*>("place" + kind)->isChecked());
        QVERIFY(!sheet.action("select")->isChecked());
        sheet.click({-10, 3});
        sheet.click({10, 3});
        QCOMPARE(sheet.lines(),
                 QStringList({kind + QLatin1Char(' ') + reference + "1 “” -10,3 0°",
                              kind + QLatin1Char(' ') + reference + "2 “” 10,3 0°"}));
        QCOMPARE(sheet.edits(), 2);
        QVERIFY(sheet.document.isModified());
        sheet.click({10, 3}); // there is one already
        QCOMPARE(sheet.edits(), 2);
        sheet.key(Qt::Key_Escape);
        QVERIFY(sheet.action("select")->isChecked());
        sheet.click({0, 15});
        QCOMPARE(sheet.edits(), 2);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), QStringList());
        QVERIFY(!sheet.document.isModified());
        sheet.key(Qt::Key_Y, Qt::ControlModifier);
        sheet.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(sheet.lines().size(), 2);
    }

    void placesAreOnTheGrid()
    {
        Sheet sheet;
        sheet.key(Qt::Key_R);
        const QPoint place = sheet.pixelOf({3, 4}) + QPoint(4, -4);
        QTest::mouseClick(sheet.view.viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(sheet.scene.schematic().symbols.first().position, QPoint(3, 4));
    }

    void aSymbolTurnsBeforeItIsPlaced()
    {
        Sheet sheet;
        sheet.key(Qt::Key_D);
        sheet.key(Qt::Key_Space);
        sheet.click({0, 0});
        QCOMPARE(sheet.lines(), QStringList("Diode D1 “” 0,0 90°"));
        sheet.click({9, 9}, Qt::RightButton);
        QVERIFY(sheet.scene.tool() == SchematicScene::Tool::Select);
    }

    void referencesAreCountedOnByKind()
    {
        Schematic schematic;
        schematic.symbols = {symbolOf(SymbolKind::Resistor, "R7", {0, 0}),
                             symbolOf(SymbolKind::Resistor, "Rx", {0, 1}),
                             symbolOf(SymbolKind::Resistor, "R2147483647x", {0, 2}),
                             symbolOf(SymbolKind::Chip, "U2", {0, 3})};
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Resistor), QString("R8"));
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Chip), QString("U3"));
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Diode), QString("D1"));
        schematic.symbols.first().reference = "R2147483647";
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Resistor), QString("R2147483648"));
    }

    void wires_data()
    {
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("points");
        QTest::addColumn<bool>("staysWithTool");
        const QString both = "-5,0 5,0 5,6 10,6";
        QTest::newRow("double click") << "double" << both + " 10,9" << true;
        QTest::newRow("Esc") << "Esc" << both << true;
        QTest::newRow("right button") << "right" << both << true;
        QTest::newRow("the same place") << "same" << both << true;
        QTest::newRow("another tool") << "tool" << both << false;
    }

    void wires()
    {
        QFETCH(QString, end);
        QFETCH(QString, points);
        QFETCH(bool, staysWithTool);
        Sheet sheet;
        sheet.key(Qt::Key_W);
        QVERIFY(sheet.action("wire")->isChecked());
        sheet.click({-5, 0});
        sheet.click({5, 6});
        sheet.click({10, 6});
        QCOMPARE(sheet.edits(), 0);
        if (end == "double")
            sheet.doubleClick({10, 9});
        else if (end == "Esc")
            sheet.key(Qt::Key_Escape);
        else if (end == "right")
            sheet.click({0, 0}, Qt::RightButton);
        else if (end == "same")
            sheet.click({10, 6});
        else
            sheet.key(Qt::Key_R);
        QCOMPARE(sheet.lines(), QStringList(points));
        QCOMPARE(sheet.edits(), 1);
        QCOMPARE(sheet.scene.tool() == SchematicScene::Tool::Wire, staysWithTool);
        QCOMPARE(sheet.action("wire")->isChecked(), staysWithTool);
        sheet.key(Qt::Key_Escape);
        QVERIFY(sheet.action("select")->isChecked());
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(sheet.lines(), QStringList());
    }

    void aWireOfOnePointIsNone()
    {
        Sheet sheet;
        sheet.key(Qt::Key_W);
        sheet.click({3, 3});
        sheet.key(Qt::Key_Escape);
        sheet.doubleClick({4, 4});
        QCOMPARE(sheet.lines(), QStringList());
        QVERIFY(!sheet.document.isModified());
    }

    void zooming()
    {
        Sheet sheet(small());
        const auto zoom = [&sheet] { return sheet.view.transform().m11(); };
        const double before = zoom();
        sheet.key(Qt::Key_Plus, Qt::ControlModifier);
        QVERIFY(zoom() > before);
        sheet.key(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(zoom(), before);
        const QPointF middle = sheet.view.viewport()->rect().center();
        QWheelEvent wheel(middle, sheet.view.viewport()->mapToGlobal(middle.toPoint()), {},
                          {0, 120}, Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(sheet.view.viewport(), &wheel);
        QVERIFY(zoom() > before);
        for (int i = 0; i < 60; ++i)
            sheet.view.zoomIn();
        QCOMPARE(zoom(), 8.0);
        for (int i = 0; i < 60; ++i)
            sheet.view.zoomOut();
        QCOMPARE(zoom(), 0.1);
        sheet.key(Qt::Key_0, Qt::ControlModifier);
        const QRectF all = sheet.scene.contents();
        QVERIFY(sheet.view.mapToScene(sheet.view.viewport()->rect()).boundingRect().contains(all));
        QVERIFY(zoom() > 1);
    }

    void theSheetHoldsStillWhileItIsDrawnOn_data()
    {
        QTest::addColumn<int>("timesSmaller");
        QTest::newRow("full size") << 0;
        QTest::newRow("smaller") << 4;
        QTest::newRow("smallest") << 60;
    }

    void theSheetHoldsStillWhileItIsDrawnOn()
    {
        QFETCH(int, timesSmaller);
        workbench::SchematicDocument document("New schematic", nullptr);
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        document.resize(800, 600);
        document.show();
        QVERIFY(zvtest::activate(document));
        workbench::SchematicView& view = document.view();
        for (int i = 0; i < timesSmaller; ++i)
            view.zoomOut();
        const QPoint middle = view.viewport()->rect().center();
        const QPointF before = view.mapToScene(middle);
        const QRectF sheet = document.scene().sceneRect();
        QVERIFY(sheet.contains(view.mapToScene(view.viewport()->rect()).boundingRect()));
        document.scene().setPlacing(SymbolKind::Chip);
        for (const QPoint& place : {QPoint(20, 30), QPoint(780, 40), QPoint(700, 560), middle}) {
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
            QCOMPARE(view.mapToScene(middle), before);
        }
        QCOMPARE(document.scene().schematic().symbols.size(), 4);
        for (int i = 0; i < 4; ++i) {
            document.scene().undoStack().undo();
            QCOMPARE(view.mapToScene(middle), before);
        }
        QVERIFY(document.scene().sceneRect().contains(sheet));
        // A part that is put far away makes the sheet larger.
        Schematic far;
        far.symbols = {zvtest::symbolOf(SymbolKind::Chip, "U1", {90'000, -3})};
        document.scene().setTool(SchematicScene::Tool::Select);
        workbench::copyToClipboard(far);
        document.scene().paste();
        QVERIFY(document.scene().sceneRect().right() > 900'000);
        QCOMPARE(view.mapToScene(middle), before);
    }

    void screenReadersFindSymbolsAndWires()
    {
        Schematic schematic = small();
        schematic.symbols[0].value = QString::fromUtf8("10 kΩ");
        Sheet sheet(schematic);
        QAccessibleInterface* const view = QAccessible::queryAccessibleInterface(&sheet.view);
        QVERIFY(view);
        const auto namesOfAll = [&] {
            QStringList names{view->text(QAccessible::Name)};
            for (int i = 0; i < view->childCount(); ++i)
                names.append(view->child(i)->text(QAccessible::Name));
            return names;
        };
        QCOMPARE(namesOfAll(),
                 (QStringList{"Schematic", QString::fromUtf8("Resistor R1, 10 kΩ"), "Resistor R2",
                              "Wire from (-2, 0) to (2, 0)"}));
        QAccessibleInterface* const first = view->child(0);
        QAccessibleInterface* const second = view->child(1);
        QCOMPARE(first->parent(), view);
        QCOMPARE(view->indexOfChild(second), 1);
        QCOMPARE(view->indexOfChild(view->child(2)), 2);
        const QPoint middle = sheet.view.viewport()->mapToGlobal(sheet.pixelOf({5, 0}));
        QVERIFY(second->rect().contains(middle));
        QCOMPARE(view->childAt(middle.x(), middle.y()), second);
        QVERIFY(!second->state().selected);
        QCOMPARE(view->focusChild(), view);
        s_told.clear();
        QAccessible::setActive(true);
        QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            if (event->type() == QAccessible::Focus && event->child() >= 0)
                s_told.append(event->child());
        });
        sheet.click({5, 0});
        QAccessible::installUpdateHandler(nullptr);
        // The offscreen platform has no screen readers to tell; those with a display have.
        QCOMPARE(s_told.isEmpty(), !QAccessible::isActive());
        if (!s_told.isEmpty())
            QCOMPARE(s_told.constLast(), 1);
        QVERIFY(second->state().selected);
        QVERIFY(second->state().focused);
        QCOMPARE(view->focusChild(), second);
        // A screen reader may put the focus elsewhere.
        first->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(sheet.scene.selectedSymbol()->reference, QString("R1"));
        QVERIFY(!second->state().selected);
        // What has been removed is no longer there, and comes back by Undo.
        sheet.key(Qt::Key_Delete);
        QVERIFY(!first->isValid());
        QVERIFY(first->state().invalid);
        QCOMPARE(first->text(QAccessible::Name), QString());
        QCOMPARE(view->childCount(), 2);
        QCOMPARE(view->child(0), second);
        sheet.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(view->child(0), first);
        QCOMPARE(zvtest::unnamedIn(sheet.document), QStringList());
    }

    void junctions_data()
    {
        QTest::addColumn<QVector<QVector<QPoint>>>("wires");
        QTest::addColumn<QVector<QPoint>>("junctions");
        using Wires = QVector<QVector<QPoint>>;
        const auto row = [](const char* name, const Wires& wires,
                            const QVector<QPoint>& junctions) {
            QTest::newRow(name) << wires << junctions;
        };
        row("two ends", {{{0, 0}, {5, 0}}, {{5, 0}, {5, 5}}}, {});
        row("three ends", {{{0, 0}, {5, 0}}, {{5, 0}, {5, 5}}, {{5, 0}, {9, 0}}}, {{5, 0}});
        row("an end on a wire", {{{0, 0}, {9, 0}}, {{5, 0}, {5, 5}}}, {{5, 0}});
        row("an end on a corner", {{{0, 0}, {5, 0}, {5, 5}}, {{5, 0}, {9, 0}}}, {{5, 0}});
        row("crossing", {{{0, 0}, {9, 0}}, {{5, -5}, {5, 5}}}, {});
        row("two ends from both sides", {{{0, 0}, {9, 0}}, {{5, 0}, {5, 5}}, {{5, 0}, {5, -5}}},
            {{5, 0}});
        row("ends beside a wire", {{{0, 0}, {9, 0}}, {{5, 1}, {5, 5}}}, {});
        row("pin on a wire", {{{7, 20}, {7, 30}}}, {});
        row("pin on a passing wire", {{{-9, 10}, {9, 10}}}, {{-3, 10}, {3, 10}});
        row("one end at a pin", {{{3, 10}, {9, 10}}}, {});
    }

    void junctions()
    {
        QFETCH(QVector<QVector<QPoint>>, wires);
        QFETCH(QVector<QPoint>, junctions);
        Schematic schematic;
        schematic.symbols = {symbolOf(SymbolKind::Resistor, "R1", {0, 10})};
        for (const QVector<QPoint>& points : wires)
            schematic.wires.append({0, points});
        QVector<QPoint> found = workbench::junctionsOf(schematic);
        std::sort(found.begin(), found.end(),
                  [](const QPoint& a, const QPoint& b) { return a.x() < b.x(); });
        QCOMPARE(found, junctions);
    }

    void pinsTurnWithTheirSymbol()
    {
        QCOMPARE(workbench::rotated({3, 1}, 0), QPoint(3, 1));
        QCOMPARE(workbench::rotated({3, 1}, 90), QPoint(-1, 3));
        QCOMPARE(workbench::rotated({3, 1}, 180), QPoint(-3, -1));
        QCOMPARE(workbench::rotated({3, 1}, 270), QPoint(1, -3));
    }

    void straightPartsAreOne()
    {
        using Points = QVector<QPoint>;
        QCOMPARE(workbench::simplified({{0, 0}, {3, 0}, {3, 0}, {7, 0}, {7, 2}, {7, 9}}),
                 Points({{0, 0}, {7, 0}, {7, 9}}));
        QCOMPARE(workbench::simplified({{0, 0}, {5, 0}, {2, 0}}), Points({{0, 0}, {5, 0}, {2, 0}}));
        QCOMPARE(workbench::simplified({{0, 0}, {0, 0}}), Points({{0, 0}}));
    }

    void coloursFollowTheStyle()
    {
        Sheet sheet(small());
        for (const char* const style : {"Light", "Dark"}) {
            zvtest::showPaintedStyle(style);
            sheet.scene.clearSelection();
            const QImage plain = sheet.view.viewport()->grab().toImage();
            QVERIFY(zvtest::pixelsOf(plain, colourOf(ZvStyleBrush::EditorEnabled)) > 100'000);
            QVERIFY(zvtest::pixelsOf(plain, colourOf(ZvStyleBrush::TextEnabled)) > 50);
            QCOMPARE(zvtest::pixelsOf(plain, colourOf(ZvStyleBrush::Accent)), 0);
            sheet.scene.selectAll();
            const QImage selected = sheet.view.viewport()->grab().toImage();
            QVERIFY(zvtest::pixelsOf(selected, colourOf(ZvStyleBrush::Accent)) > 50);
        }
        zvtest::showPaintedStyle("Light");
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8().constData());
        Sheet sheet;
        QVERIFY(sheet.document.load(workbench::filePath(EXAMPLES "/workbench/amplifier.zvsch")));
        QToolBar bar;
        bar.addActions(sheet.document.toolBarActions());
        bar.resize(bar.sizeHint());
        sheet.document.resize(1100, 660);
        QCoreApplication::processEvents();
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(sheet.document.grab().save(QString(PICTURES "/schematic-%1.png").arg(style)));
        sheet.scene.items().first()->setSelected(true);
        sheet.key(Qt::Key_W);
        QVERIFY(bar.grab().save(QString(PICTURES "/schematic-tools-%1.png").arg(style)));
        Symbol symbol = sheet.scene.schematic().symbols.first();
        workbench::SymbolDialog dialog(symbol, {symbol.reference}, &sheet.document);
        dialog.show();
        QVERIFY(dialog.grab().save(QString(PICTURES "/schematic-dialog-%1.png").arg(style)));
        QCOMPARE(sheet.scene.schematic().symbols.size(), 20);
        zvtest::showPaintedStyle("Light");
    }

    void aReferenceIsNoHtml()
    {
        const QString reference = "<b>R1</b>";
        const workbench::SymbolDialog dialog(symbolOf(SymbolKind::Resistor, "<b>R1</b>", {}),
                                             {reference}, nullptr);
        for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
            if (label->text().contains(reference)) {
                QCOMPARE(label->textFormat(), Qt::PlainText);
                return;
            }
        }
        QFAIL("nothing tells that the reference is taken");
    }

    void aWireHasAnEnd()
    {
        SchematicScene scene;
        int failures = 0;
        connect(&scene, &SchematicScene::failed, this, [&failures] { ++failures; });
        scene.setTool(SchematicScene::Tool::Wire);
        for (int i = 0; i <= workbench::maxWirePoints / 2; ++i)
            zvtest::clickOn(scene, {i, i});
        QCOMPARE(failures, 1);
        scene.escape();
        QCOMPARE(scene.schematic().wires.size(), 1);
        QVERIFY(scene.schematic().wires.first().points.size() <= workbench::maxWirePoints);
    }
};

QTEST_MAIN(tst_workbench_schematic)

#include "tst_workbench_schematic.moc"
