#pragma once

#include "impl/models/directory_stream.h"

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace zvutil::impl {

/// A walk through everything below a directory. The walk stands on an entry from its construction
/// on, descends into directories, though not through links, and follows the order of the file
/// system.
///
/// After the end the last entry can still be read. If that entry lies in a subdirectory, its path
/// was cut back by one name for each directory that the walk has left since: it is the path of a
/// directory with the type of the entry.
class directory_walk
{
public:
    /// Opens \p directory, a path in the form of Windows on every platform. The walk is at its end
    /// at once if the directory is empty or there is an \p error.
    directory_walk(std::wstring_view directory, std::error_code& error);

    bool at_end() const { return m_atEnd; }

    /// Moves on to the next entry, or to the end if there is an \p error or an exception.
    void increment(std::error_code& error);

    /// Whether the entry is a regular file or a link to one. Only a link costs a system call.
    bool is_file(std::error_code& error) const;
    /// Appends the entry's name. A name that isn't text gets U+FFFD.
    void append_name(std::u16string& text) const;
    /// The entry's directory, native and with a separator at its end. All entries of one directory
    /// share the text, while the walk doesn't leave it.
    const QString& folder();
    /// The entry's path.
    std::u16string path() const;

private:
    struct level
    {
        directory_stream stream;
        native_string name;
        /// The length of this directory's path in `m_text`.
        std::size_t size;
        QString folder;
    };

    void descend(std::error_code& error);
    void climb(std::error_code& error);

    std::vector<level> m_levels;
    /// The path of the innermost level.
    std::u16string m_text;
    directory_entry m_entry;
    bool m_isCutBack = false;
    bool m_atEnd = true;
};

} // namespace zvutil::impl
