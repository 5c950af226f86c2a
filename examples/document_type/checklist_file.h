#pragma once

#include "Checklist.h"

#include <zvutil/ZvFilePath.h>

/// Reads a checklist; an empty file holds an empty one. Throws `workbench::FileError`.
Checklist readChecklist(const zvutil::ZvFilePath& file);

/// Replaces \p file by \p checklist. Throws `workbench::FileError`, and then leaves it as it was.
void saveChecklist(const Checklist& checklist, const zvutil::ZvFilePath& file);
