#pragma once

#include <zvutil/ZvFilePath.h>

#include <QString>

namespace workbench {

/// The path as Qt's file classes take it.
QString qtFileName(const zvutil::ZvFilePath& path);

/// The path of a file that Qt names; the inverse of `qtFileName`.
zvutil::ZvFilePath filePath(const QString& qtFileName);

} // namespace workbench
