#pragma once

#include "schematic/Schematic.h"

namespace workbench {

/// Puts a part of a schematic on the clipboard, in a format that only the workbench reads.
void copyToClipboard(const Schematic& part);

/// Reads the part of a schematic on the clipboard into \p part. Returns false if there is none that
/// can be read.
bool readFromClipboard(Schematic& part);

} // namespace workbench
