#pragma once

#include "common/Failure.h"
#include "schematic/Schematic.h"
#include "schematic/SchematicEdit.h"
#include "schematic/WireTool.h"

#include <QGraphicsScene>
#include <QSet>
#include <QUndoStack>

#include <functional>
#include <map>

namespace workbench {

class GridItem;
class SymbolItem;
class WireItem;

/// A schematic that the user draws. All edits go over the undo stack. Each is one step of it, but
/// moves of the same parts that follow each other are one together.
class SchematicScene : public QGraphicsScene
{
    Q_OBJECT

public:
    enum class Tool { Select, Wire, Place };

    explicit SchematicScene(QObject* parent = nullptr);
    ~SchematicScene() override;

    const Schematic& schematic() const;
    /// Replaces all, and forgets all edits. Ids are given anew.
    void setSchematic(Schematic schematic);

    QUndoStack& undoStack();

    /// What all symbols and wires cover.
    QRectF contents() const;

    /// What a click does. A wire that is being drawn ends.
    void setTool(Tool tool);
    /// Clicks place symbols of that kind.
    void setPlacing(SymbolKind kind);
    Tool tool() const;
    SymbolKind placing() const;

    /// Whether a wire is being drawn.
    bool isDrawing() const;
    /// Ends the wire that is being drawn, or else the use of the tool, or else the selection.
    void escape();

    /// Turns what is selected, around the first part of it, or the symbol that is about to be
    /// placed.
    void rotate();
    void removeSelected();
    void moveSelected(const QPoint& steps);
    void selectAll();
    void copy();
    void cut();
    void paste();

    /// The one symbol that is selected, or nullptr.
    const Symbol* selectedSymbol() const;
    void setTexts(int id, const QString& reference, const QString& value);

Q_SIGNALS:
    void toolChanged();
    /// The user wants to change the texts of the selected symbol.
    void editRequested();
    void failed(const workbench::Failure& failure);

protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;

private:
    void push(const QString& text, const Schematic& after,
              SchematicEdit::Merging merging = SchematicEdit::Merging::None);
    void show(const Schematic& schematic);
    void showSymbols();
    void showWires();
    void useTool();
    void placeSymbol(const QPoint& place);
    void addWirePoint(const QPoint& place);
    void endWire();
    void selectItems(const std::function<bool(int id)>& isSelected);
    QSet<int> selectedIds() const;
    Schematic selectedPart() const;
    /// Changes what is selected in a copy, and pushes that; refuses what would lie out of reach.
    void changeSelected(const QString& text, const std::function<void(Symbol&)>& changeSymbol,
                        const std::function<QPoint(const QPoint&)>& changePoint,
                        SchematicEdit::Merging merging = SchematicEdit::Merging::None);
    void insert(const Schematic& part);
    /// Whether so many more symbols and wires may come. If not, the failure \p what is told.
    bool hasRoom(const QString& what, int symbols, int wires);

    Schematic m_schematic;
    QUndoStack m_undoStack;
    std::map<int, SymbolItem*> m_symbols;
    std::map<int, WireItem*> m_wires;
    QVector<QPoint> m_junctions;
    int m_nextId = 1;
    Tool m_tool = Tool::Select;
    SymbolItem* m_ghost = nullptr; ///< the symbol that is about to be placed
    WireTool m_wire;
};

} // namespace workbench
