// Edits, undoing and redoing in any order: at each index of the undo stack the content is what it was
// when the step was made.

#include "DocumentTest.h"
#include "PlanStates.h"
#include "SheetStates.h"

#include <QTest>

class tst_workbench_undo_states : public zvtest::DocumentTest
{
    Q_OBJECT

private Q_SLOTS:
    void planIsWhatItWasAtEachIndex()
    {
        using namespace zvtest;
        using Model = PlanModel;
        using System = PlanSystem;
        QVERIFY(rc::check("undoing and redoing a test plan", [] {
            System system;
            rc::state::check(Model(), system,
                             rc::state::gen::execOneOfWithArgs<
                                 TypeCell, RenameHeading, PasteCells, InsertRowsAbove,
                                 RemoveSelectedRows, MoveSelectedRows, InsertColumnsBefore,
                                 RemoveSelectedColumns, MoveSelectedColumns, ClearCells, FillDown,
                                 DisableSelectedRows, Undo<Model, System>, Undo<Model, System>,
                                 Undo<Model, System>, Redo<Model, System>, Redo<Model, System>,
                                 SetClean<Model, System>, WalkThrough<Model, System>>());
        }));
    }

    void schematicIsWhatItWasAtEachIndex()
    {
        using namespace zvtest;
        using Model = SheetModel;
        using System = SheetSystem;
        QVERIFY(rc::check("undoing and redoing a schematic", [] {
            System system;
            rc::state::check(
                Model(), system,
                rc::state::gen::execOneOfWithArgs<
                    PlaceSymbol, DrawWire, Escape, SelectAll, TogglePart, TogglePart, MoveSelected,
                    MoveSelected, MoveSelected, Rotate, Remove, CopyOrCut, Paste, SetTexts,
                    Undo<Model, System>, Undo<Model, System>, Redo<Model, System>,
                    SetClean<Model, System>, WalkThrough<Model, System>>());
        }));
    }
};

QTEST_MAIN(tst_workbench_undo_states)
#include "tst_workbench_undo_states.moc"
