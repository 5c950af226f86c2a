#pragma once

namespace workbench {

class SchematicView;

/// Has screen readers find the symbols and wires of schematics in their views: each has a name, a place, and whether
/// it is selected. Further calls do nothing.
void installSchematicAccessibility();

/// Tells screen readers that the selection has changed; the focus is on the first element that is selected.
void tellOfSelection(SchematicView& view);

} // namespace workbench
