#pragma once

#include <filesystem>
#include <memory>
#include <system_error>

namespace zvutil::impl {

/// Text of the platform's file system.
using native_string = std::filesystem::path::string_type;

/// What a directory says of an entry, without following links.
enum class entry_type {
    regular,
    directory,
    link, ///< also an entry of which the directory can't say what it is
    other,
};

struct directory_entry
{
    native_string name;
    entry_type type = entry_type::other;
};

/// An open directory. It gives its entries in the order of the file system, without `.` and `..`.
///
/// Subdirectories are opened by way of this object, not by their path, where the platform has that:
/// so a path may be longer than the platform allows, and a directory that is replaced by a link
/// isn't left by it.
class directory_stream
{
public:
    /// Opens the directory at \p path; a link is followed. It is closed if there is an \p error.
    directory_stream(const native_string& path, std::error_code& error);
    /// Opens a directory in \p parent; a link is an error.
    directory_stream(const directory_stream& parent, const native_string& name,
                     std::error_code& error);
    directory_stream(directory_stream&& other) noexcept;
    directory_stream& operator=(directory_stream&& other) noexcept;
    ~directory_stream();

    /// Moves on to the next entry. Returns false, and leaves \p entry as it was, at the end or if
    /// there is an \p error.
    bool next(directory_entry& entry, std::error_code& error);

    /// What an entry is, with links followed; `other` for one that is missing.
    entry_type status(const native_string& name, std::error_code& error) const;

    /// Gives back the descriptor, if directories have one, for a time at which only directories in
    /// this one are used. The entries that are left are read into memory.
    void suspend(std::error_code& error);
    /// Undoes that, by way of a directory in this one.
    void resume(const directory_stream& child, std::error_code& error);

private:
    struct state;

    std::unique_ptr<state> m_state;
};

} // namespace zvutil::impl
