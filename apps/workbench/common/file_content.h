#pragma once

#include <zvutil/ZvFilePath.h>

#include <QByteArray>

namespace workbench {

/// The content of a file, or nothing if it can't be read.
QByteArray contentOf(const zvutil::ZvFilePath& path);

} // namespace workbench
