#pragma once

#include <filesystem>
#include <string>

namespace zvutil::impl {

/// The text of a path in 16-bit units: as it is where paths are wide, decoded from UTF-8 where they
/// are bytes. Throws `std::system_error` with `EILSEQ` for bytes that aren't UTF-8.
std::u16string path_text(const std::filesystem::path& path);

} // namespace zvutil::impl
