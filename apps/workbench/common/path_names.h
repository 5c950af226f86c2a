#pragma once

#include <zvutil/ZvFilePath.h>

#include <QString>

namespace workbench {

/// Returns a path in the form that Qt's file classes take.
QString qtFileName(const zvutil::ZvFilePath& path);

/// Returns the path of a file that Qt names, with the separators that users know; the inverse of
/// `qtFileName`.
zvutil::ZvFilePath filePath(const QString& qtFileName);

/// Returns one name for a file that can be reached by several, so that it isn't opened twice.
QString canonicalName(const QString& file);

} // namespace workbench
