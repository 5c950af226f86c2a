#pragma once

#include <zvutil/ZvFilePath.h>

namespace workbench {

/// Returns whether another program holds \p file open so that it can't be replaced. Only Windows knows
/// such a thing.
bool isInUse(const zvutil::ZvFilePath& file);

} // namespace workbench
