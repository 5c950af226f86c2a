#pragma once

#include "documents/ProgressBox.h"

#include <zvutil/ZvFilePath.h>

#include <QString>

namespace workbench {

class Document;

/// The extension of PDF files.
QString pdfExtension();

/// Writes \p document, which has `OutputContent`, as it is now to a file in the format that the extension of \p target
/// tells: one of its own formats, or else PDF. Throws `FileError`, and `Stopped` if \p progress returns false; then the
/// file is as it was.
void exportFile(const Document& document, const zvutil::ZvFilePath& target,
                const Progress& progress);

} // namespace workbench
