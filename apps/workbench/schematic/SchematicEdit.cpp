#include "schematic/SchematicEdit.h"

#include <utility>

namespace workbench {

SchematicEdit::SchematicEdit(const QString& text, const Schematic& before, const Schematic& after,
                             Merging merging, Modify modify)
    : QUndoCommand(text)
    , m_symbols(before.symbols, after.symbols)
    , m_wires(before.wires, after.wires)
    , m_id(merging == Merging::WithMoves ? 1 : -1)
    , m_modify(std::move(modify))
{
}

bool SchematicEdit::isEmpty() const
{
    return m_symbols.isEmpty() && m_wires.isEmpty();
}

int SchematicEdit::id() const
{
    return m_id;
}

bool SchematicEdit::mergeWith(const QUndoCommand* next)
{
    const auto& edit = static_cast<const SchematicEdit&>(*next);
    if (!m_symbols.isFollowedBy(edit.m_symbols) || !m_wires.isFollowedBy(edit.m_wires))
        return false;
    m_symbols.append(edit.m_symbols);
    m_wires.append(edit.m_wires);
    setObsolete(m_symbols.leadsBack() && m_wires.leadsBack());
    return true;
}

void SchematicEdit::redo()
{
    m_modify([this](Schematic& schematic) {
        m_symbols.redo(schematic.symbols);
        m_wires.redo(schematic.wires);
    });
}

void SchematicEdit::undo()
{
    m_modify([this](Schematic& schematic) {
        m_symbols.undo(schematic.symbols);
        m_wires.undo(schematic.wires);
    });
}

} // namespace workbench
