#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

/// The lexical rules of paths: drive letters, UNC names, both `\` and `/` as separators, on every
/// platform. Paths are wide text in 16-bit units; no function looks at a file system.
///
/// A path is read as root name, root directory (the run of separators after it) and relative path.
namespace zvutil::impl::path_rules {

constexpr wchar_t preferred_separator = L'\\';

constexpr bool is_separator(wchar_t unit)
{
    return unit == L'\\' || unit == L'/';
}

/// The number of units of the root name: a drive, a device prefix, or a UNC server.
std::size_t root_name_size(std::wstring_view path);

/// The index of the relative path, after the root name and all separators that follow it.
std::size_t relative_begin(std::wstring_view path);

/// Whether \p path is a drive followed by a separator, or has any other root name.
bool is_absolute(std::wstring_view path);

/// Compares two paths: less than, equal to or greater than 0. Root names are compared exactly;
/// after them case counts, but runs of separators are equal to each other.
int compare(std::wstring_view left, std::wstring_view right);

/// Whether `compare` returns 0.
inline bool are_equal(std::wstring_view left, std::wstring_view right)
{
    // Compare the whole texts first only if they end alike; a difference would cost a pass for nothing.
    if (left.size() == right.size()
        && (left.empty()
            || (left.back() == right.back()
                && std::memcmp(left.data(), right.data(), left.size() * sizeof(wchar_t)) == 0)))
        return true;
    return compare(left, right) == 0;
}

/// What two paths make together: the first units of one, perhaps a separator, and the last ones of the other.
struct joined_path
{
    std::size_t kept;
    bool is_separated;
    std::wstring_view added;
};

/// What `append` makes of \p path.
joined_path join(std::wstring_view path, std::wstring_view added);

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
