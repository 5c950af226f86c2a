#pragma once

#include <QString>
#include <QStringList>

namespace workbench {

/// Opens the workbench, or shows in the one that is open, what \p words ask for; see `Arguments`.
/// Returns an empty text, or what is wrong with them.
QString open(const QStringList& words);

} // namespace workbench
