#pragma once

#include <QString>
#include <QStringList>

namespace workbench {

/// Opens the workbench, or uses the one that is open, and shows what \p words ask for; see
/// `Arguments`. Returns an empty text, or what is wrong with the words.
QString openWorkbench(const QStringList& words);

} // namespace workbench
