// Schematics of the workbench: drawing with mouse and keys, undo, the clipboard, the files and the
// looks, through the real widgets.

#include <zvutil/ZvStyle.h>

#include "common/path_names.h"
#include "documents/XmlText.h"
#include "schematic/SchematicClipboard.h"
#include "schematic/SchematicDocument.h"
#include "schematic/SchematicReadFile.h"
#include "schematic/SchematicSaveFile.h"
#include "schematic/SchematicView.h"
#include "schematic/SymbolDialog.h"
#include "schematic/SymbolItem.h"
#include "schematic/WireItem.h"
#include "support/Answer.h"
#include "support/StyleHost.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QGraphicsSceneMouseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <algorithm>
#include <random>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using workbench::Failure;
using workbench::gridStep;
using workbench::Schematic;
using workbench::SchematicDocument;
using workbench::SchematicScene;
using workbench::SchematicView;
using workbench::Symbol;
using workbench::SymbolKind;
using workbench::Wire;

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

QString textOf(const QPoint& point)
{
    return QStringLiteral("%1,%2").arg(point.x()).arg(point.y());
}

/// One line for each symbol and wire, without ids.
QStringList textOf(const Schematic& schematic)
{
    QStringList lines;
    for (const Symbol& symbol : schematic.symbols)
        lines.append(QStringLiteral("%1 %2 “%3” %4 %5°")
                         .arg(workbench::kindName(symbol.kind), symbol.reference, symbol.value,
                              textOf(symbol.position), QString::number(symbol.rotation)));
    for (const Wire& wire : schematic.wires) {
        QStringList points;
        for (const QPoint& point : wire.points)
            points.append(textOf(point));
        lines.append(points.join(QLatin1Char(' ')));
    }
    return lines;
}

Symbol symbolOf(SymbolKind kind, const char* reference, const QPoint& position, int rotation = 0)
{
    Symbol symbol;
    symbol.kind = kind;
    symbol.reference = QString::fromLatin1(reference);
    symbol.position = position;
    symbol.rotation = rotation;
    return symbol;
}

/// Two resistors and a wire between them.
Schematic small()
{
    Schematic schematic;
    schematic.symbols = {symbolOf(SymbolKind::Resistor, "R1", {-5, 0}),
                         symbolOf(SymbolKind::Resistor, "R2", {5, 0})};
    schematic.wires = {{0, {{-2, 0}, {2, 0}}}};
    return schematic;
}

/// A schematic in a window of its own, one unit of the scene to the pixel.
class Sheet
{
public:
    explicit Sheet(const Schematic& schematic = Schematic())
        : document(QStringLiteral("New schematic"), nullptr)
        , scene(document.scene())
        , view(document.view())
    {
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(&document, &workbench::Document::failed, &document,
                         [this](const Failure& failure) { failures.append(failure.reason); });
        scene.setSchematic(schematic);
        document.resize(800, 600);
        document.show();
        if (!activate())
            qFatal("the window doesn't become the active one");
        view.zoomIn(); // it doesn't fit itself any longer
        view.setTransform(QTransform());
        view.centerOn(0, 0);
    }

    /// Again after a dialog, too.
    bool activate()
    {
        view.setFocus();
        return zvtest::activate(document);
    }

    QPoint pixelOf(const QPoint& step) const { return view.mapFromScene(step * gridStep); }

    void moveMouse(const QPoint& step, Qt::MouseButtons buttons = Qt::NoButton)
    {
        // QTest's own way tells of no buttons that are held.
        const QPoint place = pixelOf(step);
        QMouseEvent event(QEvent::MouseMove, place, view.viewport()->mapToGlobal(place),
                          Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }

    void click(const QPoint& step, Qt::MouseButton button = Qt::LeftButton)
    {
        moveMouse(step);
        QTest::mouseClick(view.viewport(), button, {}, pixelOf(step));
    }

    void doubleClick(const QPoint& step)
    {
        click(step);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, pixelOf(step));
    }

    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pixelOf(from));
        moveMouse((from + to) / 2, Qt::LeftButton);
        moveMouse(to, Qt::LeftButton);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pixelOf(to));
    }

    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view, static_cast<Qt::Key>(code), modifiers);
    }

    QStringList lines() const { return textOf(scene.schematic()); }
    int edits() const { return scene.undoStack().count(); }

    QAction* action(const char* name) const
    {
        return document.findChild<QAction*>(QString::fromLatin1(name));
    }

    SchematicDocument document;
    SchematicScene& scene;
    SchematicView& view;
    QStringList failures;
};

/// What stands in the way of OK, or "OK".
QString hintOf(const workbench::SymbolDialog& dialog)
{
    QString hint;
    for (const QLabel* const label : dialog.findChildren<QLabel*>())
        hint += label->wordWrap() ? label->text() : QString();
    const auto* const buttons = dialog.findChild<QDialogButtonBox*>();
    const bool isOk = buttons->button(QDialogButtonBox::Ok)->isEnabled();
    return hint + (isOk ? QStringLiteral("OK") : QString());
}

QColor colourOf(ZvStyleBrush brush)
{
    return ZvStyle::Current().colour(brush).qColour();
}

} // namespace

class tst_workbench_schematic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<Failure>();
        QVERIFY(m_host.isValid());
        QVERIFY(m_dir.isValid());
        zvtest::showPaintedStyle("Light");
    }

    void cleanup() { zvtest::closeFiles(); }

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
        QVERIFY(sheet.document.findChild<QAction*>(QStringLiteral("place") + kind)->isChecked());
        QVERIFY(!sheet.action("select")->isChecked());
        sheet.click({-10, 3});
        sheet.click({10, 3});
        QCOMPARE(
            sheet.lines(),
            QStringList({kind + QLatin1Char(' ') + reference + QStringLiteral("1 “” -10,3 0°"),
                         kind + QLatin1Char(' ') + reference + QStringLiteral("2 “” 10,3 0°")}));
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
        QCOMPARE(sheet.lines(), QStringList(QStringLiteral("Diode D1 “” 0,0 90°")));
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
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Resistor), QStringLiteral("R8"));
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Chip), QStringLiteral("U3"));
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Diode), QStringLiteral("D1"));
        schematic.symbols.first().reference = QStringLiteral("R2147483647");
        QCOMPARE(workbench::nextReference(schematic, SymbolKind::Resistor),
                 QStringLiteral("R2147483648"));
    }

    void wires_data()
    {
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("points");
        QTest::addColumn<bool>("staysWithTool");
        const QString both = QStringLiteral("-5,0 5,0 5,6 10,6");
        QTest::newRow("double click")
            << QStringLiteral("double") << both + QStringLiteral(" 10,9") << true;
        QTest::newRow("Esc") << QStringLiteral("Esc") << both << true;
        QTest::newRow("right button") << QStringLiteral("right") << both << true;
        QTest::newRow("the same place") << QStringLiteral("same") << both << true;
        QTest::newRow("another tool") << QStringLiteral("tool") << both << false;
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
        if (end == QLatin1String("double"))
            sheet.doubleClick({10, 9});
        else if (end == QLatin1String("Esc"))
            sheet.key(Qt::Key_Escape);
        else if (end == QLatin1String("right"))
            sheet.click({0, 0}, Qt::RightButton);
        else if (end == QLatin1String("same"))
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

    void dragging()
    {
        Sheet sheet(small());
        sheet.drag({-5, 0}, {-7, 4});
        QCOMPARE(sheet.lines().first(), QStringLiteral("Resistor R1 “” -7,4 0°"));
        QCOMPARE(sheet.edits(), 1);
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        sheet.drag({5, 0}, {6, -3});
        QCOMPARE(
            sheet.lines(),
            QStringList({QStringLiteral("Resistor R1 “” -6,1 0°"),
                         QStringLiteral("Resistor R2 “” 6,-3 0°"), QStringLiteral("-1,-3 3,-3")}));
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
        QCOMPARE(sheet.scene.selectedSymbol()->reference, QStringLiteral("R1"));
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
        QCOMPARE(sheet.lines().first(), QStringLiteral("Resistor R1 “” -6,-1 0°"));
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
        QCOMPARE(sheet.lines().first(), QStringLiteral("Resistor R1 “” -5,0 0°"));
        sheet.key(Qt::Key_R, Qt::ControlModifier);
        QCOMPARE(sheet.lines().first(), QStringLiteral("Resistor R1 “” -5,0 90°"));
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        const QStringList before = sheet.lines();
        sheet.key(Qt::Key_Space);
        QCOMPARE(
            sheet.lines(),
            QStringList({QStringLiteral("Resistor R1 “” -5,0 180°"),
                         QStringLiteral("Resistor R2 “” -5,10 90°"), QStringLiteral("-5,3 -5,7")}));
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
                 QStringList({QStringLiteral("Resistor R1 “” -5,0 0°"),
                              QStringLiteral("Resistor R2 “” 5,0 0°"),
                              QStringLiteral("Resistor R3 “” -3,2 0°"),
                              QStringLiteral("Resistor R4 “” 7,2 0°"), QStringLiteral("-2,0 2,0"),
                              QStringLiteral("0,2 4,2")}));
        QCOMPARE(from.scene.selectedItems().size(), 3);
        QCOMPARE(from.edits(), 1);
        from.key(Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(from.lines(), textOf(small()));

        Sheet to;
        to.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(to.lines(),
                 QStringList({QStringLiteral("Resistor R1 “” -1,4 0°"),
                              QStringLiteral("Resistor R2 “” 9,4 0°"), QStringLiteral("2,4 6,4")}));
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
        QApplication::clipboard()->setText(QStringLiteral("text"));
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
        zvtest::Answer<workbench::SymbolDialog> answer([&seen](workbench::SymbolDialog& dialog) {
            auto* const reference = dialog.findChild<QLineEdit*>(QStringLiteral("reference"));
            for (const char* const typed : {"R2", "  ", "R9"}) {
                seen.append(reference->text());
                reference->setText(QString::fromLatin1(typed));
                seen.append(hintOf(dialog));
            }
            dialog.findChild<QLineEdit*>(QStringLiteral("value"))->setText(QStringLiteral("4.7 k"));
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
                 QStringList({QStringLiteral("R1"), QStringLiteral("Another symbol is R2 already."),
                              QStringLiteral("R2"), QStringLiteral("A symbol needs a reference."),
                              QStringLiteral("  "), QStringLiteral("OK")}));
        QCOMPARE(sheet.lines().first(), QStringLiteral("Resistor R9 “4.7 k” -5,0 0°"));
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
        const QString file = m_dir.filePath(QStringLiteral("round.zvsch"));
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, goOn));
        QCOMPARE(textOf(readSchematic(file)), textOf(schematic));
    }

    /// A file that breaks off anywhere is refused, or is all there.
    void brokenFilesAreRefused()
    {
        const QString file = m_dir.filePath(QStringLiteral("whole.zvsch"));
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(small(), goOn));
        zvtest::closeFiles();
        const QByteArray whole = zvtest::bytesOf(file);
        const QString cut = m_dir.filePath(QStringLiteral("cut.zvsch"));
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
        row("no XML", "R1", "It is no XML file.");
        row("another root", "<testplan version='1'/>", "It is no schematic: it holds “testplan”.");
        row("newer", "<schematic version='7'/>", "newer version");
        row("no counts", "<schematic version='1'/>", "no “symbols”");
        row("absurd count", "<schematic version='1' symbols='2000000000' wires='0'/>",
            "“2000000000”");
        row("claims much", "<schematic version='1' symbols='100000' wires='0'/>",
            "It ends after symbol 0 of 100000");
        row("no wires", "<schematic version='1' symbols='0' wires='2'/>",
            "It ends after wire 0 of 2");
        row("more symbols",
            "<schematic version='1' symbols='0' wires='0'>"
            "<symbol kind='Chip' ref='U1' value='' x='0' y='0' rotation='0'/></schematic>",
            "more symbols or wires");
        row("unknown kind", symbol("kind='Coil' ref='L1' value='' x='0' y='0' rotation='0'"),
            "the kind “Coil”");
        row("too far", symbol("kind='Chip' ref='U1' value='' x='1000001' y='0' rotation='0'"),
            "“x” is “1000001”");
        row("too far the other way",
            symbol("kind='Chip' ref='U1' value='' x='0' y='-1000001' rotation='0'"),
            "“y” is “-1000001”");
        row("between steps", symbol("kind='Chip' ref='U1' value='' x='0.5' y='0' rotation='0'"),
            "“x” is “0.5”");
        row("turned by half", symbol("kind='Chip' ref='U1' value='' x='0' y='0' rotation='45'"),
            "rotated by 45 degrees");
        row("turned too far", symbol("kind='Chip' ref='U1' value='' x='0' y='0' rotation='360'"),
            "“rotation” is “360”");
        row("no reference", symbol("kind='Chip' value='' x='0' y='0' rotation='0'"), "no “ref”");
        row("one point", wire("<wire points='1'><point x='0' y='0'/></wire>"), "“points” is “1”");
        row("points missing", wire("<wire points='2'><point x='0' y='0'/></wire>"),
            "It ends after wire 0 of 1");
        row("points left",
            wire("<wire points='2'><point x='0' y='0'/><point x='1' y='0'/><point x='2' "
                 "y='0'/></wire>"),
            "more points than it tells");
        row("not straight",
            wire("<wire points='2'><point x='0' y='0'/><point x='1' y='1'/></wire>"),
            "doesn't run straight");
        row("no way", wire("<wire points='2'><point x='0' y='0'/><point x='0' y='0'/></wire>"),
            "doesn't run straight");
        row("something else", wire("<bus/>"), "“bus” where “wire” is expected");
    }

    void wrongFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        const QString file = m_dir.filePath(QStringLiteral("wrong.zvsch"));
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
        const QString file = m_dir.filePath(QStringLiteral("empty.zvsch"));
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
        sheet.document.saveAs(
            workbench::filePath(m_dir.filePath(QStringLiteral("missing/a.zvsch"))));
        QCOMPARE(sheet.failures.size(), 1);
        QVERIFY(sheet.failures.last().contains(QStringLiteral("There is no folder")));
        QVERIFY(sheet.document.isModified());

        const QString file = m_dir.filePath(QStringLiteral("unwritable.zvsch"));
        sheet.scene.setTexts(sheet.scene.schematic().symbols.first().id, QStringLiteral("R1"),
                             QStringLiteral("\x02"));
        sheet.document.saveAs(workbench::filePath(file));
        QVERIFY2(sheet.failures.last().startsWith(QStringLiteral("The value of R1")),
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
        QCOMPARE(sheet.scene.schematic().symbols.last().reference,
                 QStringLiteral("R%1").arg(2 * count));
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
        const QString file = m_dir.filePath(QStringLiteral("stopped.zvsch"));
        Schematic schematic;
        schematic.symbols.fill(symbolOf(SymbolKind::Chip, "U", {0, 0}, 0), 2'000);
        schematic.wires.fill({0, {{0, 0}, {0, 1}}}, 1'000);
        const auto stop = [end](int done, int all) { return all == 3'000 && done < end; };
        QVERIFY(zvtest::writeTo(file, "as it was"));
        QVERIFY_EXCEPTION_THROWN(
            workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, stop),
            workbench::Stopped);
        QCOMPARE(zvtest::bytesOf(file), QByteArray("as it was"));
        QVERIFY(workbench::SchematicSaveFile(workbench::filePath(file)).save(schematic, goOn));
        QVERIFY_EXCEPTION_THROWN(workbench::SchematicReadFile(workbench::filePath(file)).read(stop),
                                 workbench::Stopped);
        zvtest::closeFiles();
    }

    void twoDocumentsAndAnOutsideChange()
    {
        const QString file = m_dir.filePath(QStringLiteral("shared.zvsch"));
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

    void pictures_data()
    {
        zvtest::addStyleRows();
    }

    void pictures()
    {
        QFETCH(QString, style);
        zvtest::showPaintedStyle(style.toUtf8().constData());
        Sheet sheet;
        QVERIFY(sheet.document.load(
            workbench::filePath(QStringLiteral(EXAMPLES "/workbench/amplifier.zvsch"))));
        QToolBar bar;
        bar.addActions(sheet.document.toolBarActions());
        bar.resize(bar.sizeHint());
        sheet.document.resize(1100, 660);
        QCoreApplication::processEvents();
        QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
        QVERIFY(
            sheet.document.grab().save(QStringLiteral(PICTURES "/schematic-%1.png").arg(style)));
        sheet.scene.items().first()->setSelected(true);
        sheet.key(Qt::Key_W);
        QVERIFY(bar.grab().save(QStringLiteral(PICTURES "/schematic-tools-%1.png").arg(style)));
        Symbol symbol = sheet.scene.schematic().symbols.first();
        workbench::SymbolDialog dialog(symbol, {symbol.reference}, &sheet.document);
        dialog.show();
        QVERIFY(dialog.grab().save(QStringLiteral(PICTURES "/schematic-dialog-%1.png").arg(style)));
        QCOMPARE(sheet.scene.schematic().symbols.size(), 20);
        zvtest::showPaintedStyle("Light");
    }

    void aReferenceIsNoHtml()
    {
        const QString reference = QStringLiteral("<b>R1</b>");
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

    void movesThatFollowEachOtherAreOneStep()
    {
        Sheet sheet(small());
        sheet.key(Qt::Key_A, Qt::ControlModifier);
        for (int i = 0; i < 100; ++i)
            sheet.key(Qt::Key_Right);
        sheet.key(Qt::Key_Down);
        QCOMPARE(sheet.edits(), 1);
        const QStringList moved = sheet.lines();
        QCOMPARE(moved.first(), QStringLiteral("Resistor R1 “” 95,1 0°"));
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
        for (int i = 1; i < (isOfWires ? workbench::maximumWires : workbench::maximumSymbols);
             ++i) {
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
            clickOn(scene, {x, -9});
            if (isOfWires)
                clickOn(scene, {x + 5, -9});
            scene.setTool(SchematicScene::Tool::Select);
        };
        draw(0);
        QCOMPARE(failures, QStringList());
        QCOMPARE(scene.undoStack().count(), 1);
        draw(20);
        const QString drawn = isOfWires ? QStringLiteral("The wire was not drawn.")
                                        : QStringLiteral("The symbol was not placed.");
        QCOMPARE(failures.value(0), drawn);
        Schematic part;
        if (isOfWires)
            part.wires = {{0, {{0, 0}, {9, 0}}}};
        else
            part.symbols = {symbolOf(SymbolKind::Chip, "U1", {0, 0})};
        workbench::copyToClipboard(part);
        scene.paste();
        QCOMPARE(failures.last(), QStringLiteral("Nothing was pasted."));
        QCOMPARE(scene.undoStack().count(), 1);
        QVERIFY(scene.schematic().symbols.size() <= workbench::maximumSymbols);
        QVERIFY(scene.schematic().wires.size() <= workbench::maximumWires);
    }

    void aWireHasAnEnd()
    {
        SchematicScene scene;
        int failures = 0;
        connect(&scene, &SchematicScene::failed, this, [&failures] { ++failures; });
        scene.setTool(SchematicScene::Tool::Wire);
        for (int i = 0; i <= workbench::maximumWirePoints / 2; ++i)
            clickOn(scene, {i, i});
        QCOMPARE(failures, 1);
        scene.escape();
        QCOMPARE(scene.schematic().wires.size(), 1);
        QVERIFY(scene.schematic().wires.first().points.size() <= workbench::maximumWirePoints);
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
        QVERIFY(sheet.lines().contains(QStringLiteral("-5,8 5,8")));
        QCOMPARE(sheet.scene.selectedItems().size(), 3);
    }

private:
    static void clickOn(SchematicScene& scene, const QPoint& step)
    {
        QGraphicsSceneMouseEvent press(QEvent::GraphicsSceneMousePress);
        press.setButton(Qt::LeftButton);
        press.setScenePos(step * gridStep);
        QApplication::sendEvent(&scene, &press);
    }

    const zvtest::StyleHost m_host;
    const QTemporaryDir m_dir;
};

QTEST_MAIN(tst_workbench_schematic)

#include "tst_workbench_schematic.moc"
