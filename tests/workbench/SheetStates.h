#pragma once

#include "Sheet.h"
#include "UndoStates.h"
#include "schematic/GridItem.h"
#include "schematic/SchematicScene.h"
#include "schematic/WireTool.h"
#include "schematic/wire_ends.h"

#include <QList>
#include <QPoint>
#include <QSet>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zvtest {

/// A schematic with ids of the model's own, what is selected, and what the tool is about to do.
struct SheetModel
{
    using Ids = QSet<int>;
    /// A step's mark is the ids that it has moved, if it is a move.
    using Moved = std::optional<Ids>;

    UndoHistory<workbench::Schematic, Moved> history{{}};
    Ids selected;
    workbench::SchematicScene::Tool tool = workbench::SchematicScene::Tool::Select;
    workbench::WireTool wire;
    std::optional<workbench::Schematic> clipboard;
    int nextId = 1;

    /// The moves of the same parts that follow each other, which are made anew from the first one's beginning.
    struct Moving
    {
        workbench::Schematic before;
        Ids ids;
        QPoint steps;
        workbench::Schematic after;
    };
    std::optional<Moving> moving;

    const workbench::Schematic& now() const { return history.now(); }

    /// What is no longer there isn't selected any more.
    void settle()
    {
        Ids present;
        for (const workbench::Symbol& symbol : now().symbols)
            present.insert(symbol.id);
        for (const workbench::Wire& part : now().wires)
            present.insert(part.id);
        selected &= present;
        // Another selection ends the moves that follow each other.
        if (moving && moving->ids != selected)
            moving.reset();
    }

    void push(const workbench::Schematic& after, const Moved& moved = {})
    {
        if (after == now())
            return;
        const bool isMerged =
            moved && history.index() > 0 && history.mark() == moved && !history.isClean();
        if (isMerged)
            history.merge(after);
        else
            history.push(after, moved);
        settle();
    }

    void endWire()
    {
        const QVector<QPoint> points = wire.finish();
        if (points.size() < 2)
            return;
        workbench::Schematic after = now();
        after.wires.append({nextId++, points});
        push(after);
    }

    void setTool(workbench::SchematicScene::Tool next)
    {
        endWire();
        tool = next;
        if (tool != workbench::SchematicScene::Tool::Select)
            selected.clear();
    }

    workbench::Schematic selectedPart() const
    {
        workbench::Schematic part;
        for (const workbench::Symbol& symbol : now().symbols) {
            if (selected.contains(symbol.id))
                part.symbols.append(symbol);
        }
        for (const workbench::Wire& element : now().wires) {
            if (selected.contains(element.id))
                part.wires.append(element);
        }
        return part;
    }

    /// Changes the points of what is selected. Does nothing if one would be out of reach.
    void change(const std::function<QPoint(const QPoint&)>& changed, int turn)
    {
        workbench::Schematic after = now();
        bool isInReach = true;
        const auto set = [&](QPoint& point) {
            point = changed(point);
            isInReach = isInReach && workbench::isWithinReach(point);
        };
        for (workbench::Symbol& symbol : after.symbols) {
            if (!selected.contains(symbol.id))
                continue;
            set(symbol.position);
            symbol.rotation = (symbol.rotation + turn) % 360;
        }
        for (workbench::Wire& element : after.wires) {
            if (selected.contains(element.id))
                std::for_each(element.points.begin(), element.points.end(), set);
        }
        if (isInReach)
            push(after);
    }

    void moveSelected(const QPoint& steps)
    {
        if (!moving || moving->ids != selected || !(moving->after == now()))
            moving = Moving{now(), selected, {}, now()};
        const QPoint all = moving->steps + steps;
        const auto followers = workbench::followersOf(moving->before, selected);
        workbench::Schematic after = moving->before;
        for (workbench::Symbol& symbol : after.symbols) {
            if (selected.contains(symbol.id))
                symbol.position += all;
        }
        for (workbench::Wire& element : after.wires) {
            if (selected.contains(element.id)) {
                for (QPoint& point : element.points)
                    point += all;
            } else if (followers.count(element.id) > 0) {
                element.points =
                    workbench::stretched(element.points, followers.at(element.id), all);
            }
        }
        if (!isInReach(after))
            return;
        moving->steps = all;
        push(after, changedIds(now(), after));
        moving->after = now();
    }

    static bool isInReach(const workbench::Schematic& schematic)
    {
        bool isInReach = true;
        for (const workbench::Symbol& symbol : schematic.symbols)
            isInReach = isInReach && workbench::isWithinReach(symbol.position);
        for (const workbench::Wire& element : schematic.wires) {
            for (const QPoint& point : element.points)
                isInReach = isInReach && workbench::isWithinReach(point);
        }
        return isInReach;
    }

    /// The ids of parts that differ between two schematics of the same parts.
    static Ids changedIds(const workbench::Schematic& before, const workbench::Schematic& after)
    {
        Ids ids;
        for (int i = 0; i < before.symbols.size(); ++i) {
            if (!(before.symbols.at(i) == after.symbols.at(i)))
                ids.insert(before.symbols.at(i).id);
        }
        for (int i = 0; i < before.wires.size(); ++i) {
            if (!(before.wires.at(i) == after.wires.at(i)))
                ids.insert(before.wires.at(i).id);
        }
        return ids;
    }

    void removeSelected()
    {
        workbench::Schematic after;
        for (const workbench::Symbol& symbol : now().symbols) {
            if (!selected.contains(symbol.id))
                after.symbols.append(symbol);
        }
        for (const workbench::Wire& element : now().wires) {
            if (!selected.contains(element.id))
                after.wires.append(element);
        }
        push(after);
    }

    std::string text() const
    {
        return textOf(now(), [this](int id) { return selected.contains(id); });
    }

    static std::string textOf(const workbench::Schematic& schematic,
                              const std::function<bool(int)>& isSelected)
    {
        QStringList lines = zvtest::textOf(schematic);
        for (int i = 0; i < lines.size(); ++i) {
            const int symbols = schematic.symbols.size();
            const int id =
                i < symbols ? schematic.symbols.at(i).id : schematic.wires.at(i - symbols).id;
            if (isSelected(id))
                lines[i] += " (selected)";
        }
        return lines.join('\n').toStdString();
    }
};

/// A scene without a view.
class SheetSystem
{
public:
    QUndoStack& undoStack() { return scene.undoStack(); }

    std::string text() const
    {
        QSet<int> selected;
        for (const QGraphicsItem* const item : scene.selectedItems())
            selected.insert(static_cast<const workbench::GridItem*>(item)->id());
        return SheetModel::textOf(scene.schematic(),
                                  [&selected](int id) { return selected.contains(id); });
    }

    /// What is shown is what is there.
    std::string fault() const
    {
        QSet<int> shown;
        for (const QGraphicsItem* const item : scene.items()) {
            const auto& part = *static_cast<const workbench::GridItem*>(item);
            if (part.gridPosition() * workbench::gridStep != part.pos())
                return "an item isn't where it belongs";
            shown.insert(part.id());
        }
        QSet<int> ids;
        for (const workbench::Symbol& symbol : scene.schematic().symbols)
            ids.insert(symbol.id);
        for (const workbench::Wire& wire : scene.schematic().wires)
            ids.insert(wire.id);
        return shown == ids && scene.items().size() == ids.size() ? "" : "the items are others";
    }

    workbench::SchematicScene scene;
};

using SheetCommand = UndoableCommand<SheetModel, SheetSystem>;

/// Over few places, so that much meets; sometimes so far that two of them don't go together.
inline QPoint anyStep()
{
    const auto coordinate = [] {
        return *rc::gen::weightedOneOf<int>(
            {{30, rc::gen::inRange(-3, 4)},
             {1, rc::gen::element(-workbench::farthestStep, workbench::farthestStep)}});
    };
    const int x = coordinate();
    return {x, coordinate()};
}

/// Mostly a step in some direction, after which another may lead back.
inline QPoint anyMove()
{
    return *rc::gen::weightedOneOf<QPoint>(
        {{4, rc::gen::element(QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1))},
         {1, rc::gen::exec(&anyStep)}});
}

class PlaceSymbol : public SheetCommand
{
    std::string description() const override
    {
        return "place a " + workbench::kindName(m_kind).toStdString() + " at "
            + textOf(m_position).toStdString();
    }

    void change(SheetModel& model) const override
    {
        model.setTool(workbench::SchematicScene::Tool::Place);
        workbench::Schematic after = model.now();
        const bool isThere = std::any_of(after.symbols.begin(), after.symbols.end(),
                                         [this](const workbench::Symbol& s) {
                                             return s.kind == m_kind && s.position == m_position;
                                         });
        if (!isThere) {
            workbench::Symbol symbol;
            symbol.id = model.nextId++;
            symbol.kind = m_kind;
            symbol.position = m_position;
            symbol.rotation = 90 * m_turns;
            symbol.reference = workbench::nextReference(after, m_kind);
            after.symbols.append(symbol);
            model.push(after);
        }
        model.setTool(workbench::SchematicScene::Tool::Select);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.setPlacing(m_kind);
        for (int i = 0; i < m_turns; ++i)
            system.scene.rotate();
        clickOn(system.scene, m_position);
        system.scene.setTool(workbench::SchematicScene::Tool::Select);
    }

    workbench::SymbolKind m_kind =
        *rc::gen::element(workbench::SymbolKind::Resistor, workbench::SymbolKind::Ground);
    QPoint m_position = anyStep();
    int m_turns = *rc::gen::inRange(0, 4);
};

/// Draws a wire, which may be left open.
class DrawWire : public SheetCommand
{
public:
    DrawWire()
    {
        const int count = *rc::gen::inRange(1, 5);
        for (int i = 0; i < count; ++i)
            m_points.append(anyStep());
    }

private:
    std::string description() const override
    {
        std::string text = "wire";
        for (const QPoint& point : m_points)
            text += " " + textOf(point).toStdString();
        return text + (m_isLeftOpen ? ", left open" : "");
    }

    void change(SheetModel& model) const override
    {
        model.setTool(workbench::SchematicScene::Tool::Wire);
        for (const QPoint& point : m_points) {
            if (!model.wire.isDrawing())
                model.wire.begin(point);
            else if (model.wire.end() == point)
                model.endWire();
            else
                model.wire.extend(point);
        }
        if (!m_isLeftOpen)
            model.setTool(workbench::SchematicScene::Tool::Select);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.setTool(workbench::SchematicScene::Tool::Wire);
        for (const QPoint& point : m_points)
            clickOn(system.scene, point);
        if (!m_isLeftOpen)
            system.scene.setTool(workbench::SchematicScene::Tool::Select);
    }

    QVector<QPoint> m_points;
    bool m_isLeftOpen = *rc::gen::weightedElement<bool>({{3, false}, {1, true}});
};

class Escape : public SheetCommand
{
    std::string description() const override { return "escape"; }

    void change(SheetModel& model) const override
    {
        if (model.wire.isDrawing())
            model.endWire();
        else if (model.tool != workbench::SchematicScene::Tool::Select)
            model.setTool(workbench::SchematicScene::Tool::Select);
        else
            model.selected.clear();
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.escape();
    }
};

class SelectAll : public SheetCommand
{
    std::string description() const override { return "select all"; }

    void change(SheetModel& model) const override
    {
        for (const workbench::Symbol& symbol : model.now().symbols)
            model.selected.insert(symbol.id);
        for (const workbench::Wire& wire : model.now().wires)
            model.selected.insert(wire.id);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.selectAll();
    }
};

/// Selects one part more, or one less.
class TogglePart : public SheetCommand
{
public:
    explicit TogglePart(const SheetModel& model)
        : m_part(*rc::gen::inRange(0, std::max(partsOf(model), 1)))
    {
    }

    void checkPreconditions(const SheetModel& model) const override
    {
        RC_PRE(m_part < partsOf(model));
    }

private:
    static int partsOf(const SheetModel& model)
    {
        return model.now().symbols.size() + model.now().wires.size();
    }

    static int idIn(const workbench::Schematic& schematic, int part)
    {
        const int symbols = schematic.symbols.size();
        return part < symbols ? schematic.symbols.at(part).id
                              : schematic.wires.at(part - symbols).id;
    }

    std::string description() const override { return "toggle part " + std::to_string(m_part); }

    void change(SheetModel& model) const override
    {
        const int id = idIn(model.now(), m_part);
        if (!model.selected.remove(id))
            model.selected.insert(id);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        const int id = idIn(system.scene.schematic(), m_part);
        for (QGraphicsItem* const item : system.scene.items()) {
            if (static_cast<const workbench::GridItem*>(item)->id() == id)
                item->setSelected(!item->isSelected());
        }
    }

    int m_part;
};

class MoveSelected : public SheetCommand
{
    std::string description() const override { return "move by " + textOf(m_steps).toStdString(); }

    void change(SheetModel& model) const override { model.moveSelected(m_steps); }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.moveSelected(m_steps);
    }

    QPoint m_steps = anyMove();
};

class Rotate : public SheetCommand
{
    std::string description() const override { return "rotate"; }

    void change(SheetModel& model) const override
    {
        const workbench::Schematic part = model.selectedPart();
        QPoint middle;
        if (!part.symbols.isEmpty())
            middle = part.symbols.first().position;
        else if (!part.wires.isEmpty())
            middle = part.wires.first().points.first();
        const auto turned = [middle](const QPoint& point) {
            const QPoint way = point - middle;
            return middle + QPoint(-way.y(), way.x());
        };
        model.change(turned, 90);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.rotate();
    }
};

class Remove : public SheetCommand
{
    std::string description() const override { return "remove"; }
    void change(SheetModel& model) const override { model.removeSelected(); }
    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.removeSelected();
    }
};

class CopyOrCut : public SheetCommand
{
    std::string description() const override { return m_isCut ? "cut" : "copy"; }

    void change(SheetModel& model) const override
    {
        if (!model.selected.isEmpty())
            model.clipboard = model.selectedPart();
        if (m_isCut)
            model.removeSelected();
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        if (m_isCut)
            system.scene.cut();
        else
            system.scene.copy();
    }

    bool m_isCut = *rc::gen::arbitrary<bool>();
};

class Paste : public SheetCommand
{
public:
    void checkPreconditions(const SheetModel& model) const override
    {
        // The clipboard may have what a case before has put there.
        RC_PRE(model.clipboard.has_value());
    }

private:
    std::string description() const override { return "paste"; }

    void change(SheetModel& model) const override
    {
        model.setTool(workbench::SchematicScene::Tool::Select);
        const QPoint offset(2, 2);
        workbench::Schematic after = model.now();
        QSet<int> pasted;
        bool isInReach = true;
        for (workbench::Symbol symbol : model.clipboard->symbols) {
            symbol.id = model.nextId++;
            symbol.position += offset;
            symbol.reference = workbench::nextReference(after, symbol.kind);
            isInReach = isInReach && workbench::isWithinReach(symbol.position);
            after.symbols.append(symbol);
            pasted.insert(symbol.id);
        }
        for (workbench::Wire wire : model.clipboard->wires) {
            wire.id = model.nextId++;
            for (QPoint& point : wire.points) {
                point += offset;
                isInReach = isInReach && workbench::isWithinReach(point);
            }
            after.wires.append(wire);
            pasted.insert(wire.id);
        }
        if (!isInReach)
            return;
        model.push(after);
        model.selected = pasted;
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.paste();
    }
};

class SetTexts : public SheetCommand
{
public:
    explicit SetTexts(const SheetModel& model)
        : m_symbol(*rc::gen::inRange(0, std::max(model.now().symbols.size(), 1)))
    {
    }

    void checkPreconditions(const SheetModel& model) const override
    {
        RC_PRE(m_symbol < model.now().symbols.size());
    }

private:
    std::string description() const override
    {
        return "symbol " + std::to_string(m_symbol) + " is " + m_reference.toStdString();
    }

    void change(SheetModel& model) const override
    {
        workbench::Schematic after = model.now();
        after.symbols[m_symbol].reference = m_reference;
        after.symbols[m_symbol].value = m_value;
        model.push(after);
    }

    void perform(const SheetModel& /*before*/, SheetSystem& system) const override
    {
        system.scene.setTexts(system.scene.schematic().symbols.at(m_symbol).id, m_reference,
                              m_value);
    }

    int m_symbol;
    QString m_reference = QString::fromLatin1(*rc::gen::element("R1", "R7", "GND2", "x", ""));
    QString m_value = QString::fromLatin1(*rc::gen::element("", "10k"));
};

} // namespace zvtest
