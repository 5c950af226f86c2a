#pragma once

#include <zvutil/ZvFilePath.h>

namespace workbench {

/// Returns whether \p file exists and holds nothing, which stands for an empty document. Throws
/// `FileError` if it can't be opened, and returns false if it can't be read: its size alone would be 0
/// then as well, and the user would save an empty document over a full one.
bool isEmptyFile(const zvutil::ZvFilePath& file);

} // namespace workbench
