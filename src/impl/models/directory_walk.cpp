#include "impl/models/directory_walk.h"

#include "impl/paths/path_text.h"
#include "impl/text/text_conversion.h"
#include "impl/text/utf8.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace zvutil::impl {

namespace {

constexpr bool namesAreBytes = std::is_same_v<native_string::value_type, char>;
constexpr native_string::value_type separator = namesAreBytes ? '/' : '\\';

/// The number of levels that keep their directory open, since descriptors are limited.
constexpr std::size_t openLevels = 64;

template <typename Native>
void appendText(std::u16string& text, const Native& native)
{
    if constexpr (namesAreBytes) {
        if (std::all_of(native.begin(), native.end(), &is_ascii<char>)) {
            append_converted(text, std::string_view(native));
            return;
        }
        try {
            text += decode_utf8<char16_t>(native);
        } catch (const std::system_error&) {
            text += decode_any_utf8<char16_t>(native);
        }
    } else {
        text.append(native.begin(), native.end());
    }
}

/// Whether a name after \p path needs a separator; after a drive alone it would make another
/// directory.
bool needsSeparator(const native_string& path)
{
    return !path.empty() && path.back() != separator && (namesAreBytes || path.back() != ':');
}

} // namespace

directory_walk::directory_walk(std::wstring_view directory, std::error_code& error)
{
    native_string path = native_path(directory).native();
    if (needsSeparator(path))
        path += separator;
    directory_stream stream(path, error);
    if (error)
        return;
    appendText(m_text, path);
    m_levels.push_back({std::move(stream), {}, m_text.size(), {}});
    m_atEnd = !m_levels.back().stream.next(m_entry, error);
}

void directory_walk::increment(std::error_code& error)
{
    m_atEnd = true;
    if (m_entry.type == entry_type::directory)
        descend(error);
    while (!error && !m_levels.back().stream.next(m_entry, error)) {
        if (error || m_levels.size() == 1)
            return;
        climb(error);
    }
    if (error)
        return;
    m_isCutBack = false;
    m_atEnd = false;
}

void directory_walk::descend(std::error_code& error)
{
    directory_stream stream(m_levels.back().stream, m_entry.name, error);
    if (error)
        return;
    appendText(m_text, m_entry.name);
    m_text += separator;
    m_levels.push_back({std::move(stream), m_entry.name, m_text.size(), {}});
    if (m_levels.size() > openLevels)
        m_levels[m_levels.size() - 1 - openLevels].stream.suspend(error);
}

void directory_walk::climb(std::error_code& error)
{
    const level left = std::move(m_levels.back());
    m_levels.pop_back();
    m_text.resize(m_levels.back().size);
    m_entry.name = left.name;
    m_isCutBack = true;
    m_levels.back().stream.resume(left.stream, error);
}

bool directory_walk::is_file(std::error_code& error) const
{
    if (m_entry.type != entry_type::link)
        return m_entry.type == entry_type::regular;
    // A path that was cut back is that of a directory.
    return !m_isCutBack
        && m_levels.back().stream.status(m_entry.name, error) == entry_type::regular;
}

void directory_walk::append_name(std::u16string& text) const
{
    appendText(text, m_entry.name);
}

const QString& directory_walk::folder()
{
    QString& folder = m_levels.back().folder;
    if (folder.isNull())
        folder = QStringView(m_text).toString();
    return folder;
}

std::u16string directory_walk::path() const
{
    std::u16string path = m_text;
    append_name(path);
    return path;
}

} // namespace zvutil::impl
