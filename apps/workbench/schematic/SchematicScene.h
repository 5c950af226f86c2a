#pragma once

#include "schematic/Schematic.h"
#include "schematic/SchematicEdit.h"
#include "schematic/WireTool.h"
#include "schematic/wire_ends.h"

#include <zvworkbench/Failure.h>

#include <QGraphicsScene>
#include <QSet>
#include <QUndoStack>

#include <functional>
#include <map>
#include <optional>

namespace workbench {

class GridItem;
class SymbolItem;
class WireItem;

/// A schematic that the user draws. All edits go through the undo stack, each as one step; moves of
/// the same parts that follow each other are merged into one.
class SchematicScene : public QGraphicsScene
{
    Q_OBJECT

public:
    enum class Tool { Select, Wire, Place };

    explicit SchematicScene(QObject* parent = nullptr);
    ~SchematicScene() override;

    const Schematic& schematic() const;
    /// Replaces the schematic, gives new ids to its elements, and clears the undo stack.
    void setSchematic(Schematic schematic);

    QUndoStack& undoStack();

    /// Returns the rectangle around all symbols and wires.
    QRectF contents() const;

    /// Returns the item of a symbol or wire, or nullptr.
    const GridItem* item(int id) const;
    /// Returns the index of a symbol, or of a wire behind all symbols, or -1.
    int indexOf(int id) const;

    /// Enlarges the sheet, if need be, so that \p area lies on it. The sheet never shrinks: views would shift
    /// what they show when it did.
    void makeRoom(const QRectF& area);

    /// Sets what a click does. Ends a wire that is being drawn.
    void setTool(Tool tool);
    /// Makes clicks place symbols of the kind \p kind. Ends a wire that is being drawn.
    void setPlacing(SymbolKind kind);
    Tool tool() const;
    SymbolKind placing() const;

    /// Returns whether a wire is being drawn.
    bool isDrawing() const;
    /// Ends the wire that is being drawn, or else leaves the tool, or else clears the selection.
    void escape();

    /// Turns the symbol that is about to be placed, or else what is selected, around its first
    /// part.
    void rotate();
    void removeSelected();
    /// Moves what is selected. The ends of wires that lie on pins of moved symbols follow.
    void moveSelected(const QPoint& steps);
    void selectAll();
    /// Selects one symbol or wire.
    void select(int id);
    /// Selects the first symbol whose reference or value contains \p text in either case. Returns whether there is
    /// one.
    bool selectSymbol(const QString& text);
    void copy();
    void cut();
    void paste();

    /// Returns the symbol if exactly one element is selected and it is a symbol, or else nullptr.
    const Symbol* selectedSymbol() const;
    void setTexts(int id, const QString& reference, const QString& value);

Q_SIGNALS:
    /// Emitted when the schematic has changed.
    void schematicChanged();
    void toolChanged();
    /// Emitted when the user wants to change the texts of the selected symbol.
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
    /// Moves of the same elements that follow each other. All are made anew from the schematic before the first one,
    /// so that a symbol takes no wires along that it only passes.
    struct Move
    {
        Schematic before;
        QSet<int> ids;
        std::map<int, WireEnds> followers;
        QPoint steps; ///< of all moves
        Schematic after; ///< the present schematic, unless it has been changed by other means
    };

    void push(const QString& text, const Schematic& after,
              SchematicEdit::Merging merging = SchematicEdit::Merging::None);
    void show(const Schematic& schematic);
    void showSymbols();
    void showWires();
    void useTool();
    void placeSymbol(const QPoint& position);
    void addWirePoint(const QPoint& position);
    void endWire();
    void selectItems(const std::function<bool(int id)>& isSelected);
    QSet<int> selectedIds() const;
    Schematic selectedPart() const;
    /// Changes what is selected in a copy of the schematic, and pushes that as an edit. If a part
    /// would be out of reach, changes nothing.
    void changeSelected(const QString& text, const std::function<void(Symbol&)>& changeSymbol,
                        const std::function<QPoint(const QPoint&)>& changePoint);
    Move& presentMove();
    Schematic moved(const Move& move, const QPoint& steps) const;
    void showDragged();
    void insert(const Schematic& part);
    /// Returns whether so many more symbols and wires fit. If not, emits `failed` with \p what.
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
    std::optional<Move> m_move;
    bool m_isDragged = false; ///< wires are shown as they follow the mouse
};

} // namespace workbench
