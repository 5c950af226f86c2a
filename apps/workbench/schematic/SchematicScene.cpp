#include "schematic/SchematicScene.h"

#include "common/number_text.h"
#include "common/style_options.h"
#include "schematic/SymbolItem.h"
#include "schematic/WireItem.h"
#include "schematic/schematic_clipboard.h"

#include <zvutil/ZvStyleManager.h>

#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace workbench {

namespace {

using libzvutil::ZvStyleBrush;

constexpr double roomAround = 400;
constexpr double firstRoom = 5'000;
constexpr double ghostOpacity = 0.5;
constexpr double faintness = 0.8;
constexpr int pasteOffset = 2;

/// Deletes the items whose ids aren't in \p ids. The scene finds each of them at once, because they
/// are deleted in the order of their creation.
template <typename Item>
void removeOthers(std::map<int, Item*>& items, const QSet<int>& ids)
{
    for (auto it = items.begin(); it != items.end();) {
        if (ids.contains(it->first)) {
            ++it;
        } else {
            delete it->second;
            it = items.erase(it);
        }
    }
}

/// Returns the distance between dots: a multiple of the grid that is large enough for separate dots
/// at this scale.
double dotDistance(double scale)
{
    double distance = gridStep;
    while (distance * scale < 7)
        distance *= 5;
    return distance;
}

} // namespace

SchematicScene::SchematicScene(QObject* parent)
    : QGraphicsScene(parent)
{
    setItemIndexMethod(BspTreeIndex);
    setSceneRect(-firstRoom, -firstRoom, 2 * firstRoom, 2 * firstRoom);
    show(m_schematic);
    connect(&libzvutil::styleManager(), &libzvutil::ZvStyleManager::currentStyleChanged, this,
            [this] { update(); });
    connect(this, &QGraphicsScene::selectionChanged, this, [this] {
        if (m_move && m_move->ids != selectedIds())
            m_move.reset();
    });
}

SchematicScene::~SchematicScene()
{
    // Deleting the items one by one would emit selectionChanged(), for which there is no use any
    // more.
    const QSignalBlocker blocker(this);
    clear();
}

const Schematic& SchematicScene::schematic() const
{
    return m_schematic;
}

void SchematicScene::setSchematic(Schematic schematic)
{
    m_wire.finish();
    m_undoStack.clear();
    for (Symbol& symbol : schematic.symbols)
        symbol.id = m_nextId++;
    for (Wire& wire : schematic.wires)
        wire.id = m_nextId++;
    show(schematic);
}

QUndoStack& SchematicScene::undoStack()
{
    return m_undoStack;
}

QRectF SchematicScene::contents() const
{
    QRectF all;
    for (const auto& [id, item] : m_symbols)
        all |= item->sceneBoundingRect();
    for (const auto& [id, item] : m_wires)
        all |= item->sceneBoundingRect();
    return all;
}

const GridItem* SchematicScene::item(int id) const
{
    const auto symbol = m_symbols.find(id);
    if (symbol != m_symbols.end())
        return symbol->second;
    const auto wire = m_wires.find(id);
    return wire != m_wires.end() ? wire->second : nullptr;
}

int SchematicScene::indexOf(int id) const
{
    const auto isWanted = [id](const auto& element) { return element.id == id; };
    const QVector<Symbol>& symbols = m_schematic.symbols;
    const QVector<Wire>& wires = m_schematic.wires;
    const auto symbol = std::find_if(symbols.cbegin(), symbols.cend(), isWanted);
    if (symbol != symbols.cend())
        return static_cast<int>(symbol - symbols.cbegin());
    const auto wire = std::find_if(wires.cbegin(), wires.cend(), isWanted);
    return wire == wires.cend() ? -1 : symbols.size() + static_cast<int>(wire - wires.cbegin());
}

void SchematicScene::makeRoom(const QRectF& area)
{
    if (!sceneRect().contains(area))
        setSceneRect(sceneRect() | area);
}

void SchematicScene::setTool(Tool tool)
{
    endWire();
    m_tool = tool;
    useTool();
}

void SchematicScene::setPlacing(SymbolKind kind)
{
    endWire();
    delete std::exchange(m_ghost, nullptr);
    Symbol symbol;
    symbol.kind = kind;
    m_ghost = new SymbolItem(symbol);
    m_ghost->setFlag(QGraphicsItem::ItemIsSelectable, false);
    m_ghost->setAcceptedMouseButtons(Qt::NoButton);
    m_ghost->setOpacity(ghostOpacity);
    m_ghost->setVisible(false); // until the mouse moves
    addItem(m_ghost);
    m_tool = Tool::Place;
    useTool();
}

SchematicScene::Tool SchematicScene::tool() const
{
    return m_tool;
}

SymbolKind SchematicScene::placing() const
{
    return m_ghost ? m_ghost->symbol().kind : SymbolKind::Resistor;
}

bool SchematicScene::isDrawing() const
{
    return m_wire.isDrawing();
}

void SchematicScene::escape()
{
    if (isDrawing())
        endWire();
    else if (m_tool != Tool::Select)
        setTool(Tool::Select);
    else
        clearSelection();
}

void SchematicScene::rotate()
{
    if (m_tool == Tool::Place) {
        Symbol symbol = m_ghost->symbol();
        symbol.rotation = (symbol.rotation + 90) % 360;
        m_ghost->setSymbol(symbol);
        return;
    }
    const Schematic part = selectedPart();
    // The first part is the centre: the middle of all would have to be rounded to the grid, and
    // four turns would not lead back.
    const QPoint middle = !part.symbols.isEmpty() ? part.symbols.first().position
        : !part.wires.isEmpty()                   ? part.wires.first().points.first()
                                                  : QPoint();
    changeSelected(
        tr("Rotate"), [](Symbol& symbol) { symbol.rotation = (symbol.rotation + 90) % 360; },
        [middle](const QPoint& point) { return middle + rotated(point - middle, 90); });
}

void SchematicScene::removeSelected()
{
    const QSet<int> ids = selectedIds();
    const auto isSelected = [&ids](const auto& element) { return ids.contains(element.id); };
    Schematic after = m_schematic;
    after.symbols.erase(std::remove_if(after.symbols.begin(), after.symbols.end(), isSelected),
                        after.symbols.end());
    after.wires.erase(std::remove_if(after.wires.begin(), after.wires.end(), isSelected),
                      after.wires.end());
    push(tr("Delete"), after);
}

void SchematicScene::moveSelected(const QPoint& steps)
{
    Move& move = presentMove();
    const Schematic after = moved(move, move.steps + steps);
    const auto isInReach = [](const auto& points) {
        return std::all_of(points.begin(), points.end(), isWithinReach);
    };
    const bool areInReach =
        std::all_of(after.symbols.begin(), after.symbols.end(),
                    [](const Symbol& symbol) { return isWithinReach(symbol.position); })
        && std::all_of(after.wires.begin(), after.wires.end(),
                       [&](const Wire& wire) { return isInReach(wire.points); });
    if (!areInReach) {
        show(m_schematic);
        return;
    }
    move.steps += steps;
    push(tr("Move"), after, SchematicEdit::Merging::WithMoves);
    // What is shown anew has told of its selection, and another one would have ended the move.
    if (m_move)
        m_move->after = m_schematic;
}

/// Returns the move that what is selected takes part in, or a new one.
SchematicScene::Move& SchematicScene::presentMove()
{
    const QSet<int> ids = selectedIds();
    if (!m_move || m_move->ids != ids || !(m_move->after == m_schematic))
        m_move = Move{m_schematic, ids, followersOf(m_schematic, ids), {}, m_schematic};
    return *m_move;
}

Schematic SchematicScene::moved(const Move& move, const QPoint& steps) const
{
    Schematic after = move.before;
    for (Symbol& symbol : after.symbols) {
        if (move.ids.contains(symbol.id))
            symbol.position += steps;
    }
    for (Wire& wire : after.wires) {
        if (move.ids.contains(wire.id)) {
            for (QPoint& point : wire.points)
                point += steps;
        }
        const auto follower = move.followers.find(wire.id);
        if (follower != move.followers.end())
            wire.points = stretched(wire.points, follower->second, steps);
    }
    return after;
}

/// Shows how the wires follow what the mouse drags.
void SchematicScene::showDragged()
{
    constexpr int maxShown = 2'000;
    const QList<QGraphicsItem*> selected = selectedItems();
    if (selected.isEmpty() || m_schematic.symbols.size() + m_schematic.wires.size() > maxShown)
        return;
    const auto* const first = static_cast<const GridItem*>(selected.constFirst());
    const QPoint steps = nearestStep(first->pos()) - first->gridPosition();
    if (steps.isNull() && !m_isDragged)
        return;
    m_isDragged = true;
    const Move& move = presentMove();
    const Schematic after = moved(move, move.steps + steps);
    for (const Wire& wire : after.wires) {
        if (move.followers.count(wire.id) > 0)
            m_wires.at(wire.id)->setWire(wire);
    }
    m_junctions = junctionsOf(after);
    update();
}

void SchematicScene::selectAll()
{
    selectItems([](int /*id*/) { return true; });
}

void SchematicScene::select(int id)
{
    setTool(Tool::Select);
    selectItems([id](int other) { return other == id; });
}

bool SchematicScene::selectSymbol(const QString& text)
{
    const auto found = std::find_if(m_schematic.symbols.cbegin(), m_schematic.symbols.cend(),
                                    [&text](const Symbol& symbol) {
                                        return symbol.reference.contains(text, Qt::CaseInsensitive)
                                            || symbol.value.contains(text, Qt::CaseInsensitive);
                                    });
    if (found == m_schematic.symbols.cend())
        return false;
    select(found->id);
    return true;
}

void SchematicScene::copy()
{
    const Schematic part = selectedPart();
    if (!part.symbols.isEmpty() || !part.wires.isEmpty())
        copyToClipboard(part);
}

void SchematicScene::cut()
{
    copy();
    removeSelected();
}

void SchematicScene::paste()
{
    Schematic part;
    if (readFromClipboard(part))
        insert(part);
    else
        Q_EMIT failed({tr("Nothing was pasted."),
                       tr("There is no part of a schematic on the clipboard."),
                       tr("Select symbols and wires of a schematic, copy them, and paste again.")});
}

const Symbol* SchematicScene::selectedSymbol() const
{
    const QSet<int> ids = selectedIds();
    const auto found =
        std::find_if(m_schematic.symbols.begin(), m_schematic.symbols.end(),
                     [&ids](const Symbol& symbol) { return ids.contains(symbol.id); });
    return ids.size() == 1 && found != m_schematic.symbols.end() ? &*found : nullptr;
}

void SchematicScene::setTexts(int id, const QString& reference, const QString& value)
{
    Schematic after = m_schematic;
    for (Symbol& symbol : after.symbols) {
        if (symbol.id == id) {
            symbol.reference = reference;
            symbol.value = value;
        }
    }
    push(tr("Edit symbol"), after);
}

void SchematicScene::drawBackground(QPainter* painter, const QRectF& rect)
{
    painter->fillRect(rect, styleColour(ZvStyleBrush::EditorEnabled));
    QColor faint = styleColour(ZvStyleBrush::BorderEditorEnabled);
    faint.setAlphaF(faintness);
    QPen pen(faint, 2, Qt::SolidLine, Qt::RoundCap);
    pen.setCosmetic(true);
    painter->setPen(pen);
    const double distance = dotDistance(std::sqrt(std::abs(painter->transform().determinant())));
    QVector<QPointF> dots;
    const auto first = [distance](double edge) {
        return static_cast<int>(std::ceil(edge / distance));
    };
    for (int x = first(rect.left()); x * distance <= rect.right(); ++x) {
        for (int y = first(rect.top()); y * distance <= rect.bottom(); ++y)
            dots.append({x * distance, y * distance});
    }
    painter->drawPoints(dots.constData(), dots.size());
}

void SchematicScene::drawForeground(QPainter* painter, const QRectF& rect)
{
    for (const QPoint& junction : std::as_const(m_junctions)) {
        const QPointF position = junction * gridStep;
        if (rect.adjusted(-gridStep, -gridStep, gridStep, gridStep).contains(position))
            paintJunction(*painter, junction, styleColour(ZvStyleBrush::TextEnabled));
    }
    if (!m_wire.isDrawing())
        return;
    QPolygonF line;
    for (const QPoint& point : m_wire.shownPoints())
        line.append(point * gridStep);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(styleColour(ZvStyleBrush::Accent), 2));
    painter->drawPolyline(line);
}

void SchematicScene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    const QPoint position = nearestStep(event->scenePos());
    if (m_tool == Tool::Select) {
        QGraphicsScene::mousePressEvent(event);
        // The view draws a rubber band for presses that aren't accepted, which only the left button
        // may do.
        event->setAccepted(event->isAccepted() || event->button() != Qt::LeftButton);
        return;
    }
    event->accept();
    if (event->button() == Qt::RightButton)
        escape();
    else if (event->button() == Qt::LeftButton && m_tool == Tool::Place)
        placeSymbol(position);
    else if (event->button() == Qt::LeftButton)
        addWirePoint(position);
}

void SchematicScene::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    const QPoint position = nearestStep(event->scenePos());
    if (m_tool == Tool::Place) {
        m_ghost->setPos(position * gridStep);
        m_ghost->setVisible(true);
    } else if (m_tool == Tool::Wire && m_wire.isDrawing()) {
        m_wire.setPointer(position);
        update();
    }
    QGraphicsScene::mouseMoveEvent(event);
    if (m_tool == Tool::Select && (event->buttons() & Qt::LeftButton))
        showDragged();
}

void SchematicScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseReleaseEvent(event);
    // The mouse moves all selected items by the same distance, so the first one that has moved
    // gives it.
    const bool wasDragged = std::exchange(m_isDragged, false);
    for (const QGraphicsItem* const item : selectedItems()) {
        const QPoint position = static_cast<const GridItem*>(item)->gridPosition();
        const QPoint steps = nearestStep(item->pos()) - position;
        if (!steps.isNull()) {
            moveSelected(steps);
            return;
        }
    }
    if (wasDragged)
        show(m_schematic);
}

void SchematicScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event)
{
    event->accept();
    if (m_tool == Tool::Wire)
        endWire();
    else if (m_tool == Tool::Select && selectedSymbol())
        Q_EMIT editRequested();
}

void SchematicScene::push(const QString& text, const Schematic& after,
                          SchematicEdit::Merging merging)
{
    auto edit = std::make_unique<SchematicEdit>(
        text, m_schematic, after, merging, [this](const std::function<void(Schematic&)>& change) {
            Schematic changed = m_schematic;
            change(changed);
            show(changed);
        });
    if (!edit->isEmpty())
        m_undoStack.push(edit.release());
}

void SchematicScene::show(const Schematic& schematic)
{
    m_schematic = schematic;
    {
        // Deleting selected items would emit selectionChanged() for each; it is emitted once,
        // below.
        const QSignalBlocker blocker(this);
        showSymbols();
        showWires();
    }
    Q_EMIT selectionChanged();
    m_junctions = junctionsOf(m_schematic);
    makeRoom(contents().adjusted(-roomAround, -roomAround, roomAround, roomAround));
    update();
    Q_EMIT schematicChanged();
}

void SchematicScene::showSymbols()
{
    QSet<int> ids;
    for (const Symbol& symbol : std::as_const(m_schematic.symbols)) {
        ids.insert(symbol.id);
        SymbolItem*& item = m_symbols[symbol.id];
        if (item) {
            item->setSymbol(symbol);
            continue;
        }
        item = new SymbolItem(symbol);
        item->setFlag(QGraphicsItem::ItemIsMovable);
        addItem(item);
    }
    removeOthers(m_symbols, ids);
}

void SchematicScene::showWires()
{
    QSet<int> ids;
    for (const Wire& wire : std::as_const(m_schematic.wires)) {
        ids.insert(wire.id);
        WireItem*& item = m_wires[wire.id];
        if (item) {
            item->setWire(wire);
            continue;
        }
        item = new WireItem(wire);
        item->setFlag(QGraphicsItem::ItemIsMovable);
        addItem(item);
    }
    removeOthers(m_wires, ids);
}

void SchematicScene::useTool()
{
    if (m_tool != Tool::Place)
        delete std::exchange(m_ghost, nullptr);
    if (m_tool != Tool::Select)
        clearSelection();
    Q_EMIT toolChanged();
}

void SchematicScene::placeSymbol(const QPoint& position)
{
    Symbol symbol = m_ghost->symbol();
    const bool isThere =
        std::any_of(m_schematic.symbols.cbegin(), m_schematic.symbols.cend(), [&](const Symbol& s) {
            return s.position == position && s.kind == symbol.kind;
        });
    if (isThere || !hasRoom(tr("The symbol was not placed."), 1, 0))
        return;
    symbol.id = m_nextId++;
    symbol.position = position;
    symbol.reference = nextReference(m_schematic, symbol.kind);
    Schematic after = m_schematic;
    after.symbols.append(symbol);
    push(tr("Place %1").arg(symbol.reference), after);
}

void SchematicScene::addWirePoint(const QPoint& position)
{
    if (!m_wire.isDrawing()) {
        if (!hasRoom(tr("The wire was not drawn."), 0, 1))
            return;
        m_wire.begin(position);
    } else if (m_wire.end() == position) {
        endWire();
    } else if (m_wire.pointsTo(position).size() > maxWirePoints) {
        Q_EMIT failed({tr("The wire was not drawn any further."),
                       tr("A wire has at most %1 points.").arg(numberText(maxWirePoints)),
                       tr("End this wire, and begin another one there.")});
        return;
    } else {
        m_wire.extend(position);
    }
    update();
}

void SchematicScene::endWire()
{
    const QVector<QPoint> points = m_wire.finish();
    update();
    if (points.size() < 2 || !hasRoom(tr("The wire was not drawn."), 0, 1))
        return;
    Schematic after = m_schematic;
    after.wires.append({m_nextId++, points});
    push(tr("Draw wire"), after);
}

void SchematicScene::selectItems(const std::function<bool(int id)>& isSelected)
{
    {
        // Selecting items would emit selectionChanged() for each; it is emitted once, below.
        const QSignalBlocker blocker(this);
        for (QGraphicsItem* const item : items())
            item->setSelected(isSelected(static_cast<const GridItem*>(item)->id()));
    }
    Q_EMIT selectionChanged();
}

QSet<int> SchematicScene::selectedIds() const
{
    QSet<int> ids;
    for (const QGraphicsItem* const item : selectedItems())
        ids.insert(static_cast<const GridItem*>(item)->id());
    return ids;
}

Schematic SchematicScene::selectedPart() const
{
    const QSet<int> ids = selectedIds();
    Schematic part;
    for (const Symbol& symbol : m_schematic.symbols) {
        if (ids.contains(symbol.id))
            part.symbols.append(symbol);
    }
    for (const Wire& wire : m_schematic.wires) {
        if (ids.contains(wire.id))
            part.wires.append(wire);
    }
    return part;
}

void SchematicScene::changeSelected(const QString& text,
                                    const std::function<void(Symbol&)>& changeSymbol,
                                    const std::function<QPoint(const QPoint&)>& changePoint)
{
    const QSet<int> ids = selectedIds();
    bool isInReach = true;
    const auto changed = [&](const QPoint& point) {
        isInReach = isInReach && isWithinReach(changePoint(point));
        return changePoint(point);
    };
    Schematic after = m_schematic;
    for (Symbol& symbol : after.symbols) {
        if (!ids.contains(symbol.id))
            continue;
        symbol.position = changed(symbol.position);
        changeSymbol(symbol);
    }
    for (Wire& wire : after.wires) {
        if (ids.contains(wire.id))
            std::transform(wire.points.begin(), wire.points.end(), wire.points.begin(), changed);
    }
    if (isInReach)
        push(text, after);
    else
        show(m_schematic);
}

void SchematicScene::insert(const Schematic& part)
{
    const QString what = tr("Nothing was pasted.");
    // setTool() ends a wire that is being drawn, which takes one place of those checked below.
    setTool(Tool::Select);
    if (!hasRoom(what, part.symbols.size(), part.wires.size()))
        return;
    const QPoint offset(pasteOffset, pasteOffset);
    Schematic after = m_schematic;
    std::map<SymbolKind, qint64> highest;
    for (const SymbolKind kind : symbolKinds)
        highest[kind] = highestNumber(m_schematic, kind);
    const int firstId = m_nextId;
    bool isInReach = true;
    const auto moved = [&isInReach, offset](const QPoint& point) {
        isInReach = isInReach && isWithinReach(point + offset);
        return point + offset;
    };
    for (Symbol symbol : part.symbols) {
        symbol.id = m_nextId++;
        symbol.position = moved(symbol.position);
        symbol.reference = referenceOf(symbol.kind, ++highest[symbol.kind]);
        after.symbols.append(symbol);
    }
    for (Wire wire : part.wires) {
        wire.id = m_nextId++;
        std::transform(wire.points.begin(), wire.points.end(), wire.points.begin(), moved);
        after.wires.append(wire);
    }
    if (!isInReach) {
        Q_EMIT failed({what, tr("Some parts would lie beyond the edge of the sheet."),
                       tr("Copy parts that are nearer to the middle.")});
        return;
    }
    push(tr("Paste"), after);
    selectItems([firstId](int id) { return id >= firstId; });
}

bool SchematicScene::hasRoom(const QString& what, int symbols, int wires)
{
    if (symbols <= maxSymbols - m_schematic.symbols.size()
        && wires <= maxWires - m_schematic.wires.size())
        return true;
    Q_EMIT failed({what,
                   tr("A schematic has at most %1 symbols and %2 wires.")
                       .arg(numberText(maxSymbols), numberText(maxWires)),
                   tr("Continue in another schematic.")});
    return false;
}

} // namespace workbench
