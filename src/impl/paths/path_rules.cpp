#include "impl/paths/path_rules.h"

#include "impl/text/ascii_step.h"

#include <algorithm>
#include <cwchar>
#include <optional>

namespace zvutil::impl::path_rules {

namespace {

bool is_drive_letter(wchar_t unit)
{
    return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

bool has_drive(std::wstring_view path)
{
    return path.size() >= 2 && is_drive_letter(path[0]) && path[1] == L':';
}

bool has_device_prefix(std::wstring_view path)
{
    if (path.size() < 4 || !is_separator(path[0]) || !is_separator(path[3])
        || (path.size() > 4 && is_separator(path[4])))
        return false;
    return (is_separator(path[1]) && (path[2] == L'?' || path[2] == L'.'))
        || (path[1] == L'?' && path[2] == L'?');
}

bool has_server(std::wstring_view path)
{
    return path.size() >= 3 && is_separator(path[0]) && is_separator(path[1])
        && !is_separator(path[2]);
}

/// The end of the run of separators that begins at \p from.
std::size_t skip_separators(std::wstring_view path, std::size_t from)
{
    while (from < path.size() && is_separator(path[from]))
        ++from;
    return from;
}

std::size_t skip_name(std::wstring_view path, std::size_t from)
{
    while (from < path.size() && !is_separator(path[from]))
        ++from;
    return from;
}

int compare_numbers(std::size_t left, std::size_t right)
{
    return left < right ? -1 : left > right ? 1 : 0;
}

/// Compares units as unsigned numbers, whatever the sign of `wchar_t`. All are below 0x10000.
int compare_units(wchar_t left, wchar_t right)
{
    return compare_numbers(static_cast<char16_t>(left), static_cast<char16_t>(right));
}

int compare_exactly(std::wstring_view left, std::wstring_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    const auto [l, r] = std::mismatch(
        left.begin(), left.begin() + static_cast<std::ptrdiff_t>(common), right.begin());
    if (l != left.begin() + static_cast<std::ptrdiff_t>(common))
        return compare_units(*l, *r);
    return compare_numbers(left.size(), right.size());
}

/// The length of the common prefix, found in blocks.
std::size_t common_prefix(std::wstring_view left, std::wstring_view right)
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

#if defined(ZVUTIL_ASCII_STEP_SSE2)

/// A bit for each of 16 units that is a separator.
unsigned separators_at(const wchar_t* units)
{
    unsigned others = 0;
    const __m128i bytes = load_step(units, others);
    const __m128i separators = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')),
                                            _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/')));
    return static_cast<unsigned>(_mm_movemask_epi8(separators));
}

#endif

/// The index of the last name, or \p begin if the last separator is before that.
std::size_t name_begin(std::wstring_view path, std::size_t begin)
{
    std::size_t end = path.size();
#if defined(ZVUTIL_ASCII_STEP_SSE2)
    constexpr std::size_t step = ascii_step;
    for (; end >= begin + step; end -= step) {
        if (const unsigned separators = separators_at(path.data() + end - step))
            return end - step + static_cast<std::size_t>(highest_bit(separators)) + 1;
    }
#endif
    while (end > begin && !is_separator(path[end - 1]))
        --end;
    return end;
}

/// Compares two relative paths from \p l and \p r on; the units before are equal.
int compare_relative(std::wstring_view left, std::size_t l, std::wstring_view right, std::size_t r)
{
    while (l < left.size() && r < right.size()) {
        const bool left_separates = is_separator(left[l]);
        if (left_separates != is_separator(right[r]))
            return left_separates ? -1 : 1;
        if (left_separates) {
            l = skip_separators(left, l);
            r = skip_separators(right, r);
        } else if (const int order = compare_units(left[l], right[r])) {
            return order;
        } else {
            ++l;
            ++r;
        }
    }
    return compare_numbers(left.size() - l, 0) - compare_numbers(right.size() - r, 0);
}

/// Iterates over the elements of a path: root name, root directory, names, and an empty one at the
/// end after a trailing separator.
class path_elements
{
public:
    explicit path_elements(std::wstring_view path)
        : m_path(path)
        , m_root_name(root_name_size(path))
        , m_relative(relative_begin(path))
    {
        enter(0);
    }

    /// Begins with the first element of the relative path, or with the one after the separator
    /// before \p from, if that is further on.
    path_elements(std::wstring_view path, std::size_t from)
        : path_elements(path)
    {
        m_at_end = m_relative == path.size();
        m_begin = skip_separators(path, from);
        m_end = skip_name(path, m_begin);
    }

    bool at_end() const { return m_at_end; }
    std::wstring_view current() const { return m_path.substr(m_begin, m_end - m_begin); }

    void next()
    {
        if (m_end < m_relative) {
            enter(m_end);
        } else if (m_end == m_path.size()) {
            m_at_end = true;
        } else {
            // skip_separators() skips nothing at the start of the relative path.
            m_begin = skip_separators(m_path, m_end);
            m_end = skip_name(m_path, m_begin);
        }
    }

private:
    void enter(std::size_t begin)
    {
        m_begin = begin;
        if (begin < m_root_name)
            m_end = m_root_name;
        else if (begin < m_relative)
            m_end = m_relative;
        else
            m_end = skip_name(m_path, begin);
        m_at_end = m_path.empty();
    }

    std::wstring_view m_path;
    std::size_t m_root_name;
    std::size_t m_relative;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_at_end = false;
};

/// Whether a name after the first of the relative path reads as a drive.
bool has_inner_root_name(std::wstring_view path)
{
    const std::size_t relative = relative_begin(path);
    if (path.find(L':', relative) == std::wstring_view::npos)
        return false;
    std::size_t i = skip_name(path, relative);
    while (i < path.size()) {
        i = skip_separators(path, i);
        if (root_name_size(path.substr(i, skip_name(path, i) - i)) > 0)
            return true;
        i = skip_name(path, i);
    }
    return false;
}

bool has_root_directory(std::wstring_view path)
{
    return relative_begin(path) > root_name_size(path);
}

bool are_unrelated(std::wstring_view path, std::wstring_view base)
{
    const std::wstring_view root_name = path.substr(0, root_name_size(path));
    return root_name != base.substr(0, root_name_size(base))
        || is_absolute(path) != is_absolute(base)
        || (!has_root_directory(path) && has_root_directory(base)) || has_inner_root_name(path)
        || has_inner_root_name(base);
}

/// Whether two elements are equal: by their text, except that any two root directories are equal.
bool are_equal_elements(std::wstring_view left, std::wstring_view right)
{
    return left == right
        || (!left.empty() && !right.empty() && is_separator(left[0]) && is_separator(right[0]));
}

/// The place in the relative path of the first element that may differ: its start or after a
/// separator. Nothing if the texts of the roots differ.
std::optional<std::size_t> common_directory(std::wstring_view left, std::wstring_view right)
{
    const std::size_t relative = relative_begin(left);
    std::size_t same = common_prefix(left, right);
    if (same < relative || relative_begin(right) != relative)
        return {};
    while (same > relative && !is_separator(left[same - 1]))
        --same;
    return same;
}

/// The number of directories that the rest of a path descends, less those that it ascends.
std::ptrdiff_t depth(path_elements rest)
{
    std::ptrdiff_t count = 0;
    for (; !rest.at_end(); rest.next()) {
        if (rest.current() == L"..")
            --count;
        else if (!rest.current().empty() && rest.current() != L".")
            ++count;
    }
    return count;
}

} // namespace

std::size_t root_name_size(std::wstring_view path)
{
    if (has_drive(path))
        return 2;
    if (has_device_prefix(path))
        return 3;
    return has_server(path) ? skip_name(path, 2) : 0;
}

std::size_t relative_begin(std::wstring_view path)
{
    return skip_separators(path, root_name_size(path));
}

bool is_absolute(std::wstring_view path)
{
    if (has_drive(path))
        return path.size() > 2 && is_separator(path[2]);
    return root_name_size(path) > 0;
}

int compare(std::wstring_view left, std::wstring_view right)
{
    std::size_t same = common_prefix(left, right);
    const std::size_t left_relative = relative_begin(left);
    const std::size_t right_relative = relative_begin(right);
    if (left_relative == right_relative && same > left_relative) {
        // The roots are equal. If the texts differ within a run of separators, go back to its
        // start.
        while (same > left_relative && is_separator(left[same - 1]))
            --same;
        return compare_relative(left, same, right, same);
    }
    const std::size_t left_root = root_name_size(left);
    const std::size_t right_root = root_name_size(right);
    if (const int order = compare_exactly(left.substr(0, left_root), right.substr(0, right_root)))
        return order;
    if (const int order = compare_numbers(left_relative > left_root, right_relative > right_root))
        return order;
    return compare_relative(left, left_relative, right, right_relative);
}

joined_path join(std::wstring_view path, std::wstring_view added)
{
    const std::size_t root_name = root_name_size(path);
    const std::size_t added_root_name = root_name_size(added);
    if (is_absolute(added)
        || (added_root_name > 0 && path.substr(0, root_name) != added.substr(0, added_root_name)))
        return {0, false, added};
    const std::wstring_view rest = added.substr(added_root_name);
    if (has_root_directory(added))
        return {root_name, false, rest};
    // The separator is there even if \p added is empty: that is how a directory differs from a file.
    const bool is_separated = path.size() > root_name ? !is_separator(path.back()) : root_name >= 3;
    return {path.size(), is_separated, rest};
}

void append(std::wstring& path, std::wstring_view added)
{
    const joined_path joined = join(path, added);
    const std::size_t needed = joined.kept + 1 + joined.added.size();
    // Check first: reserve() may shrink a string when asked for less than its capacity.
    if (path.capacity() < needed)
        path.reserve(std::max(needed, 2 * path.capacity()));
    path.resize(joined.kept);
    if (joined.is_separated)
        path += preferred_separator;
    path.append(joined.added);
}

std::wstring_view filename(std::wstring_view path)
{
    return path.substr(name_begin(path, relative_begin(path)));
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
    std::size_t end = name_begin(path, relative);
    while (end > relative && is_separator(path[end - 1]))
        --end;
    return path.substr(0, end);
}

std::wstring relative(std::wstring_view path, std::wstring_view base)
{
    if (are_unrelated(path, base))
        return {};
    const std::optional<std::size_t> common = common_directory(path, base);
    path_elements from = common ? path_elements(base, *common) : path_elements(base);
    path_elements to = common ? path_elements(path, *common) : path_elements(path);
    while (!from.at_end() && !to.at_end() && are_equal_elements(from.current(), to.current())) {
        from.next();
        to.next();
    }
    if (from.at_end() && to.at_end())
        return L".";
    const std::ptrdiff_t up = depth(from);
    if (up < 0)
        return {};
    if (up == 0 && (to.at_end() || to.current().empty()))
        return L".";
    std::wstring result;
    result.reserve(3 * static_cast<std::size_t>(up) + path.size());
    for (std::ptrdiff_t i = 0; i < up; ++i)
        append(result, L"..");
    for (; !to.at_end(); to.next())
        append(result, to.current());
    return result;
}

} // namespace zvutil::impl::path_rules
