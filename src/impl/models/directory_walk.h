#pragma once

#include "impl/models/directory_stream.h"

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace zvutil::impl {

/// A walk through all that lies below a directory. It stands on an entry from the start, goes down
/// into directories, though not through links, and takes entries in the order of the file system.
///
/// When the walk ends, the entry that it stood on last stays to be looked at. If that lies in
/// a subdirectory, its path is cut back by one name for each directory that the walk has left
/// since: then it is the path of a directory with the type of the entry.
class directory_walk
{
public:
    /// Opens a directory, whose path has the form of Windows on every platform. At the end right
    /// away if it is empty or there is an \p error.
    directory_walk(std::wstring_view directory, std::error_code& error);

    bool at_end() const { return m_at_end; }

    /// Moves on to the next entry. At the end if there is an \p error, or if it throws.
    void increment(std::error_code& error);

    /// Whether the entry is a regular file or a link to one. Only links are asked for.
    bool is_file(std::error_code& error) const;
    /// Appends the entry's name. What can't be told as text becomes U+FFFD.
    void append_name(std::u16string& text) const;
    /// The directory that the entry is in, native and with a separator at its end. All entries of
    /// one directory share the text, while the walk doesn't leave it.
    const QString& folder();
    /// The entry's path.
    std::u16string path() const;

private:
    struct level
    {
        directory_stream stream;
        native_string name;
        /// How much of the text is the path of this directory.
        std::size_t size;
        QString folder;
    };

    void descend(std::error_code& error);
    void climb(std::error_code& error);

    std::vector<level> m_levels;
    /// The path of the innermost level.
    std::u16string m_text;
    directory_entry m_entry;
    bool m_is_cut_back = false;
    bool m_at_end = true;
};

} // namespace zvutil::impl
