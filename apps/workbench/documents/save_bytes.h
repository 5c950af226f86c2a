#pragma once

#include <zvutil/ZvFilePath.h>

#include <QByteArray>

namespace workbench {

/// Replaces the content of \p file. Throws `FileError` if not all of it is on the disk; then the file is as it was.
void saveBytes(const zvutil::ZvFilePath& file, const QByteArray& bytes);

} // namespace workbench
