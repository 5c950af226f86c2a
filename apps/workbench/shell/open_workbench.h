#pragma once

#include <zvworkbench/zvworkbench_export.h>

#include <QString>
#include <QStringList>

namespace workbench {

/// Opens the workbench, or uses the one that is open, and shows what \p words ask for; see
/// `Arguments`. Returns an empty text, or what is wrong with the words.
ZVWORKBENCH_EXPORT QString openWorkbench(const QStringList& words);

} // namespace workbench
