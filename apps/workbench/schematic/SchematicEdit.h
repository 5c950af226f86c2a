#pragma once

#include "schematic/ListDifference.h"
#include "schematic/Schematic.h"

#include <QUndoCommand>

#include <functional>

namespace workbench {

/// An edit of a schematic, to be undone and redone. Holds what it changes, and no copy of the rest.
class SchematicEdit : public QUndoCommand
{
public:
    enum class Merging { None, WithMoves };

    /// Lets its argument change the schematic, and shows the result.
    using Modify = std::function<void(const std::function<void(Schematic&)>& change)>;

    /// The edit that makes \p after of \p before. With `WithMoves` it becomes one with the moves of the
    /// same elements that follow it.
    SchematicEdit(const QString& text, const Schematic& before, const Schematic& after,
                  Merging merging, Modify modify);

    bool isEmpty() const;

    int id() const override;
    bool mergeWith(const QUndoCommand* next) override;
    void redo() override;
    void undo() override;

private:
    ListDifference<Symbol> m_symbols;
    ListDifference<Wire> m_wires;
    int m_id;
    Modify m_modify;
};

} // namespace workbench
