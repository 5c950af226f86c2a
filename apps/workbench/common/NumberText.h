#pragma once

#include <QString>

namespace workbench {

/// A number as the interface shows it: "12,345", whatever the system's locale, since its language
/// is English.
QString numberText(qint64 number);

/// A number of things: "1 file", "12,345 files".
QString countText(qint64 count, const QString& one, const QString& more);

} // namespace workbench
