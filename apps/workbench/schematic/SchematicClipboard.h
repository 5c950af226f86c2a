#pragma once

#include "schematic/Schematic.h"

namespace workbench {

/// Puts a part of a schematic on the clipboard, for this application.
void copyToClipboard(const Schematic& part);

/// The part on the clipboard in \p part, or false if there is none that can be read.
bool readFromClipboard(Schematic& part);

} // namespace workbench
