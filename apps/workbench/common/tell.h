#pragma once

#include <zvworkbench/Failure.h>

class QWidget;

namespace workbench {

/// Shows \p failure in a message box in front of \p parent, which may be null, writes it to the
/// log, and returns at once.
void tell(QWidget* parent, const Failure& failure);

/// Writes \p failure to the log alone.
void logFailure(const Failure& failure);

} // namespace workbench
