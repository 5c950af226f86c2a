#pragma once

#include <zvutil/ZvFilePath.h>

#include <QByteArray>

namespace workbench {

/// Returns the whole content of a file, or an empty array if the file can't be read.
QByteArray contentOf(const zvutil::ZvFilePath& path);

} // namespace workbench
