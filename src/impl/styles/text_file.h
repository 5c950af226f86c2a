#pragma once

#include <QString>

namespace libzvutil::impl {

/// The text of a file in UTF-8, up to a NUL if there is one; empty if the file can't be read.
QString read_text_file(const QString& fileName);

/// Writes a text in the locale's encoding. The file has its old content or the new one, even on a
/// full disk. Returns false if it couldn't be written.
bool write_text_file(const QString& fileName, const QString& text);

} // namespace libzvutil::impl
