#pragma once

#include <QString>

#include <filesystem>
#include <string>
#include <string_view>

/// Conversion between the text of a path, wide and with the separators of Windows, and the paths of
/// the platform's file system.
namespace zvutil::impl {

/// The text of a path in 16-bit units: as it is where paths are wide, decoded from UTF-8 where they
/// are bytes. Throws `std::system_error` with `EILSEQ` for bytes that aren't UTF-8.
std::wstring path_text(const std::filesystem::path& path);

/// The same with U+FFFD for bytes that aren't UTF-8, instead of that exception.
std::wstring any_path_text(const std::filesystem::path& path);

/// The platform's path for a text. Where `/` is the only separator each `\` becomes one, and the
/// text is written as UTF-8, an unpaired surrogate in three bytes.
std::filesystem::path native_path(std::wstring_view text);

/// The same for Qt's file classes, unit by unit: a byte order mark at the start is part of the
/// name. On Windows it has no `\\?\` in front.
QString native_file_name(std::wstring_view text);

} // namespace zvutil::impl
