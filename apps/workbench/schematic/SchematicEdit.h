#pragma once

#include "schematic/ListDifference.h"
#include "schematic/Schematic.h"

#include <QUndoCommand>

#include <functional>

namespace workbench {

/// An edit of a schematic that can be undone and redone. Stores what it changes, and no copy of the
/// rest.
class SchematicEdit : public QUndoCommand
{
public:
    enum class Merging { None, WithMoves };

    /// Calls its argument to change the schematic, and shows the result.
    using Modify = std::function<void(const std::function<void(Schematic&)>& change)>;

    /// Creates the edit that makes \p after of \p before. With `WithMoves`, moves of the same
    /// elements that follow are merged into it.
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
