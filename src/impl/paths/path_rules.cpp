#include "impl/paths/path_rules.h"

#include <algorithm>
#include <cwchar>
#include <optional>

namespace zvutil::impl::path_rules {

namespace {

constexpr wchar_t preferredSeparator = L'\\';

bool isDriveLetter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool hasDrive(std::wstring_view path)
{
    return path.size() >= 2 && isDriveLetter(path[0]) && path[1] == L':';
}

bool hasDevicePrefix(std::wstring_view path)
{
    if (path.size() < 4 || !is_separator(path[0]) || !is_separator(path[3])
        || (path.size() > 4 && is_separator(path[4])))
        return false;
    return (is_separator(path[1]) && (path[2] == L'?' || path[2] == L'.'))
        || (path[1] == L'?' && path[2] == L'?');
}

bool hasServer(std::wstring_view path)
{
    return path.size() >= 3 && is_separator(path[0]) && is_separator(path[1])
        && !is_separator(path[2]);
}

/// The end of the run of separators that begins at \p from.
std::size_t skipSeparators(std::wstring_view path, std::size_t from)
{
    while (from < path.size() && is_separator(path[from]))
        ++from;
    return from;
}

std::size_t skipName(std::wstring_view path, std::size_t from)
{
    while (from < path.size() && !is_separator(path[from]))
        ++from;
    return from;
}

int compareNumbers(std::size_t left, std::size_t right)
{
    return left < right ? -1 : left > right ? 1 : 0;
}

/// Compares units as unsigned numbers, whatever the sign of `wchar_t`. All are below 0x10000.
int compareUnits(wchar_t left, wchar_t right)
{
    return compareNumbers(static_cast<char16_t>(left), static_cast<char16_t>(right));
}

int compareExactly(std::wstring_view left, std::wstring_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    const auto [l, r] = std::mismatch(
        left.begin(), left.begin() + static_cast<std::ptrdiff_t>(common), right.begin());
    if (l != left.begin() + static_cast<std::ptrdiff_t>(common))
        return compareUnits(*l, *r);
    return compareNumbers(left.size(), right.size());
}

/// The length of the common prefix, found in blocks.
std::size_t commonPrefix(std::wstring_view left, std::wstring_view right)
{
    constexpr std::size_t block = 16;
    const std::size_t end = std::min(left.size(), right.size());
    std::size_t i = 0;
    while (i + block <= end && std::wmemcmp(left.data() + i, right.data() + i, block) == 0)
        i += block;
    while (i < end && left[i] == right[i])
        ++i;
    return i;
}

/// Compares two relative paths from \p l and \p r on; the units before are equal.
int compareRelative(std::wstring_view left, std::size_t l, std::wstring_view right, std::size_t r)
{
    while (l < left.size() && r < right.size()) {
        const bool leftSeparates = is_separator(left[l]);
        if (leftSeparates != is_separator(right[r]))
            return leftSeparates ? -1 : 1;
        if (leftSeparates) {
            l = skipSeparators(left, l);
            r = skipSeparators(right, r);
        } else if (const int order = compareUnits(left[l], right[r])) {
            return order;
        } else {
            ++l;
            ++r;
        }
    }
    return compareNumbers(left.size() - l, 0) - compareNumbers(right.size() - r, 0);
}

/// Iterates over the elements of a path: root name, root directory, names, and an empty one at the
/// end after a trailing separator.
class Elements
{
public:
    explicit Elements(std::wstring_view path)
        : m_path(path)
        , m_rootName(root_name_size(path))
        , m_relative(relative_begin(path))
    {
        enter(0);
    }

    /// Begins with the first element of the relative path, or with the one after the separator
    /// before \p from, if that is further on.
    Elements(std::wstring_view path, std::size_t from)
        : Elements(path)
    {
        m_atEnd = m_relative == path.size();
        m_begin = skipSeparators(path, from);
        m_end = skipName(path, m_begin);
    }

    bool atEnd() const { return m_atEnd; }
    std::wstring_view current() const { return m_path.substr(m_begin, m_end - m_begin); }

    void next()
    {
        if (m_end < m_relative) {
            enter(m_end);
        } else if (m_end == m_path.size()) {
            m_atEnd = true;
        } else {
            // skipSeparators() skips nothing at the start of the relative path.
            m_begin = skipSeparators(m_path, m_end);
            m_end = skipName(m_path, m_begin);
        }
    }

private:
    void enter(std::size_t begin)
    {
        m_begin = begin;
        if (begin < m_rootName)
            m_end = m_rootName;
        else if (begin < m_relative)
            m_end = m_relative;
        else
            m_end = skipName(m_path, begin);
        m_atEnd = m_path.empty();
    }

    std::wstring_view m_path;
    std::size_t m_rootName;
    std::size_t m_relative;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_atEnd = false;
};

/// Whether a name after the first of the relative path reads as a drive.
bool hasInnerRootName(std::wstring_view path)
{
    const std::size_t relative = relative_begin(path);
    if (path.find(L':', relative) == std::wstring_view::npos)
        return false;
    std::size_t i = skipName(path, relative);
    while (i < path.size()) {
        i = skipSeparators(path, i);
        if (root_name_size(path.substr(i, skipName(path, i) - i)) > 0)
            return true;
        i = skipName(path, i);
    }
    return false;
}

bool hasRootDirectory(std::wstring_view path)
{
    return relative_begin(path) > root_name_size(path);
}

bool areUnrelated(std::wstring_view path, std::wstring_view base)
{
    const std::wstring_view rootName = path.substr(0, root_name_size(path));
    return rootName != base.substr(0, root_name_size(base))
        || is_absolute(path) != is_absolute(base)
        || (!hasRootDirectory(path) && hasRootDirectory(base)) || hasInnerRootName(path)
        || hasInnerRootName(base);
}

/// Whether two elements are equal: by their text, except that any two root directories are equal.
bool areEqualElements(std::wstring_view left, std::wstring_view right)
{
    return left == right
        || (!left.empty() && !right.empty() && is_separator(left[0]) && is_separator(right[0]));
}

/// The place in the relative path of the first element that may differ: its start or after a
/// separator. Nothing if the texts of the roots differ.
std::optional<std::size_t> commonDirectory(std::wstring_view left, std::wstring_view right)
{
    const std::size_t relative = relative_begin(left);
    std::size_t same = commonPrefix(left, right);
    if (same < relative || relative_begin(right) != relative)
        return {};
    while (same > relative && !is_separator(left[same - 1]))
        --same;
    return same;
}

/// The number of directories that the rest of a path descends, less those that it ascends.
std::ptrdiff_t depth(Elements rest)
{
    std::ptrdiff_t count = 0;
    for (; !rest.atEnd(); rest.next()) {
        if (rest.current() == L"..")
            --count;
        else if (!rest.current().empty() && rest.current() != L".")
            ++count;
    }
    return count;
}

} // namespace

bool is_separator(wchar_t unit)
{
    return unit == L'\\' || unit == L'/';
}

std::size_t root_name_size(std::wstring_view path)
{
    if (hasDrive(path))
        return 2;
    if (hasDevicePrefix(path))
        return 3;
    return hasServer(path) ? skipName(path, 2) : 0;
}

std::size_t relative_begin(std::wstring_view path)
{
    return skipSeparators(path, root_name_size(path));
}

bool is_absolute(std::wstring_view path)
{
    if (hasDrive(path))
        return path.size() > 2 && is_separator(path[2]);
    return root_name_size(path) > 0;
}

int compare(std::wstring_view left, std::wstring_view right)
{
    // Compare the whole texts first only if they end alike; a difference would cost a pass for
    // nothing.
    const bool endAlike = left.empty() || right.empty() || left.back() == right.back();
    if (endAlike && left == right)
        return 0;
    std::size_t same = commonPrefix(left, right);
    const std::size_t leftRelative = relative_begin(left);
    const std::size_t rightRelative = relative_begin(right);
    if (leftRelative == rightRelative && same > leftRelative) {
        // The roots are equal. If the texts differ within a run of separators, go back to its
        // start.
        while (same > leftRelative && is_separator(left[same - 1]))
            --same;
        return compareRelative(left, same, right, same);
    }
    const std::size_t leftRoot = root_name_size(left);
    const std::size_t rightRoot = root_name_size(right);
    if (const int order = compareExactly(left.substr(0, leftRoot), right.substr(0, rightRoot)))
        return order;
    if (const int order = compareNumbers(leftRelative > leftRoot, rightRelative > rightRoot))
        return order;
    return compareRelative(left, leftRelative, right, rightRelative);
}

void append(std::wstring& path, std::wstring_view added)
{
    const std::size_t rootName = root_name_size(path);
    const std::size_t addedRootName = root_name_size(added);
    if (is_absolute(added)
        || (addedRootName > 0
            && std::wstring_view(path).substr(0, rootName) != added.substr(0, addedRootName))) {
        path.assign(added);
        return;
    }
    const std::size_t needed = path.size() + 1 + added.size() - addedRootName;
    // Check first: reserve() may shrink a string when asked for less than its capacity.
    if (path.capacity() < needed)
        path.reserve(std::max(needed, 2 * path.capacity()));
    if (hasRootDirectory(added)) {
        path.resize(rootName);
    } else if (path.size() > rootName ? !is_separator(path.back()) : rootName >= 3) {
        // Add the separator even if \p added is empty: that is how a directory differs from a file.
        path += preferredSeparator;
    }
    path.append(added.substr(addedRootName));
}

std::wstring_view filename(std::wstring_view path)
{
    const std::size_t relative = relative_begin(path);
    std::size_t begin = path.size();
    while (begin > relative && !is_separator(path[begin - 1]))
        --begin;
    return path.substr(begin);
}

std::wstring_view extension(std::wstring_view path)
{
    std::wstring_view name = filename(path);
    // The name of an alternate stream follows a colon.
    name = name.substr(0, name.find(L':'));
    if (name.size() < 2 || name == L"..")
        return {};
    if (name.back() == L'.')
        return name.substr(name.size() - 1);
    const std::size_t dot = name.rfind(L'.', name.size() - 2);
    return dot == std::wstring_view::npos || dot == 0 ? std::wstring_view() : name.substr(dot);
}

std::wstring_view parent(std::wstring_view path)
{
    const std::size_t relative = relative_begin(path);
    std::size_t end = path.size();
    while (end > relative && !is_separator(path[end - 1]))
        --end;
    while (end > relative && is_separator(path[end - 1]))
        --end;
    return path.substr(0, end);
}

std::wstring relative(std::wstring_view path, std::wstring_view base)
{
    if (areUnrelated(path, base))
        return {};
    const std::optional<std::size_t> common = commonDirectory(path, base);
    Elements from = common ? Elements(base, *common) : Elements(base);
    Elements to = common ? Elements(path, *common) : Elements(path);
    while (!from.atEnd() && !to.atEnd() && areEqualElements(from.current(), to.current())) {
        from.next();
        to.next();
    }
    if (from.atEnd() && to.atEnd())
        return L".";
    const std::ptrdiff_t up = depth(from);
    if (up < 0)
        return {};
    if (up == 0 && (to.atEnd() || to.current().empty()))
        return L".";
    std::wstring result;
    result.reserve(3 * static_cast<std::size_t>(up) + path.size());
    for (std::ptrdiff_t i = 0; i < up; ++i)
        append(result, L"..");
    for (; !to.atEnd(); to.next())
        append(result, to.current());
    return result;
}

} // namespace zvutil::impl::path_rules
