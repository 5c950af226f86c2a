#pragma once

#include <QString>

namespace libzvutil::impl {

/// The text of a file in UTF-8, up to a NUL if there is one; empty if the file can't be read.
QString read_text_file(const QString& fileName);

} // namespace libzvutil::impl
