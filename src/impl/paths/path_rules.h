#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The lexical rules of paths: drive letters, UNC names, both `\` and `/` as separators, on every
/// platform. Paths are wide text in 16-bit units; no function looks at a file system.
///
/// A path is read as root name, root directory (the run of separators after it) and relative path.
namespace zvutil::impl::path_rules {

bool is_separator(wchar_t unit);

/// The number of units of the root name: a drive, a device prefix, or a UNC server.
std::size_t root_name_size(std::wstring_view path);

/// The index of the relative path, after the root name and all separators that follow it.
std::size_t relative_begin(std::wstring_view path);

/// Whether \p path is a drive followed by a separator, or has any other root name.
bool is_absolute(std::wstring_view path);

/// Compares two paths: less than, equal to or greater than 0. Root names are compared exactly;
/// after them case counts, but runs of separators are equal to each other.
int compare(std::wstring_view left, std::wstring_view right);

/// Appends \p added to \p path, or replaces it if \p added is absolute or of another root.
/// \p added must not look into \p path.
void append(std::wstring& path, std::wstring_view added);

/// Returns a part of \p path, as the two below do.
std::wstring_view filename(std::wstring_view path);
std::wstring_view extension(std::wstring_view path);
std::wstring_view parent(std::wstring_view path);

/// The path that leads from \p base to \p path; empty if there is none.
std::wstring relative(std::wstring_view path, std::wstring_view base);

} // namespace zvutil::impl::path_rules
