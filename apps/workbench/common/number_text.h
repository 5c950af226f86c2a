#pragma once

#include <QString>

namespace workbench {

/// Returns \p number as the interface shows it, such as "12,345". The system's locale doesn't
/// matter, since the interface is in English.
QString numberText(qint64 number);

} // namespace workbench
