#pragma once

#include "schematic/Schematic.h"

namespace workbench {

/// Puts a part of a schematic on the clipboard, in a format that only the workbench reads.
void copyToClipboard(const Schematic& part);

/// Returns whether there is a part of a schematic on the clipboard, whether it can be read or not.
bool hasSchematicOnClipboard();

/// Reads the part of a schematic on the clipboard into \p part. Returns false if there is none that
/// can be read.
bool readFromClipboard(Schematic& part);

} // namespace workbench
