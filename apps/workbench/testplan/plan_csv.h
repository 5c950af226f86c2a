#pragma once

#include "documents/ProgressBox.h"
#include "testplan/TestPlan.h"

#include <QByteArray>

namespace workbench {

/// Returns a plan as CSV in UTF-8: its headings, then its rows, all of the same length. `planOfCsv` reads the same
/// texts from it, but not which rows are disabled. Throws `FileError` if the plan is too large, and `Stopped` if \p
/// progress returns false.
QByteArray csvOfPlan(const TestPlan& plan, const Progress& progress);

} // namespace workbench
