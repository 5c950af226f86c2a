#pragma once

#include "schematic/SchematicDocument.h"
#include "schematic/SchematicView.h"
#include "support/StyleHost.h"
#include "support/WindowResponder.h"
#include "support/Workbench.h"

#include <QApplication>
#include <QGraphicsSceneMouseEvent>
#include <QTemporaryDir>
#include <QTest>

namespace zvtest {

inline QString textOf(const QPoint& point)
{
    return QString("%1,%2").arg(point.x()).arg(point.y());
}

/// One line for each symbol and wire, without ids.
inline QStringList textOf(const workbench::Schematic& schematic)
{
    QStringList lines;
    for (const workbench::Symbol& symbol : schematic.symbols)
        lines.append(QString("%1 %2 “%3” %4 %5°")
                         .arg(workbench::kindName(symbol.kind), symbol.reference, symbol.value,
                              textOf(symbol.position), QString::number(symbol.rotation)));
    for (const workbench::Wire& wire : schematic.wires) {
        QStringList points;
        for (const QPoint& point : wire.points)
            points.append(textOf(point));
        lines.append(points.join(QLatin1Char(' ')));
    }
    return lines;
}

inline workbench::Symbol symbolOf(workbench::SymbolKind kind, const char* reference,
                                  const QPoint& position, int rotation = 0)
{
    workbench::Symbol symbol;
    symbol.kind = kind;
    symbol.reference = QString::fromLatin1(reference);
    symbol.position = position;
    symbol.rotation = rotation;
    return symbol;
}

/// Two resistors and a wire between them.
inline workbench::Schematic small()
{
    workbench::Schematic schematic;
    schematic.symbols = {symbolOf(workbench::SymbolKind::Resistor, "R1", {-5, 0}),
                         symbolOf(workbench::SymbolKind::Resistor, "R2", {5, 0})};
    schematic.wires = {{0, {{-2, 0}, {2, 0}}}};
    return schematic;
}

/// A schematic in a window of its own, one unit of the scene to the pixel.
class Sheet
{
public:
    explicit Sheet(const workbench::Schematic& schematic = workbench::Schematic())
        : document(QString("New schematic"), nullptr)
        , scene(document.scene())
        , view(document.view())
    {
        document.setAttribute(Qt::WA_DeleteOnClose, false);
        QObject::connect(
            &document, &workbench::Document::failed, &document,
            [this](const workbench::Failure& failure) { failures.append(failure.reason); });
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

    QPoint pixelOf(const QPoint& step) const
    {
        return view.mapFromScene(step * workbench::gridStep);
    }

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

    workbench::SchematicDocument document;
    workbench::SchematicScene& scene;
    workbench::SchematicView& view;
    QStringList failures;
};

inline void clickOn(workbench::SchematicScene& scene, const QPoint& step)
{
    QGraphicsSceneMouseEvent press(QEvent::GraphicsSceneMousePress);
    press.setButton(Qt::LeftButton);
    press.setScenePos(step * workbench::gridStep);
    QApplication::sendEvent(&scene, &press);
}

} // namespace zvtest
