#pragma once

#include <filesystem>
#include <memory>
#include <system_error>

namespace zvutil::impl {

/// A text of the platform's file system.
using native_string = std::filesystem::path::string_type;

/// The type that a directory reports for an entry, without following links.
enum class entry_type {
    regular,
    directory,
    link, ///< also an entry of a type that the directory can't report
    other,
};

struct directory_entry
{
    native_string name;
    entry_type type = entry_type::other;
};

/// An open directory, which returns its entries in the order of the file system, without `.` and
/// `..`.
///
/// Where the platform supports that, subdirectories are opened through this object, not by their
/// path: so a path may be longer than the platform allows, and a directory that is replaced by a
/// link doesn't lead elsewhere.
class directory_stream
{
public:
    /// Opens the directory at \p path and follows links. The stream is closed if there is an \p
    /// error.
    directory_stream(const native_string& path, std::error_code& error);
    /// Opens a directory in \p parent; a link is an error.
    directory_stream(const directory_stream& parent, const native_string& name,
                     std::error_code& error);
    directory_stream(directory_stream&& other) noexcept;
    directory_stream& operator=(directory_stream&& other) noexcept;
    ~directory_stream();

    /// Reads the next entry. Returns false, and leaves \p entry as it was, at the end or if there
    /// is an \p error.
    bool next(directory_entry& entry, std::error_code& error);

    /// The type of an entry after links were followed; `other` for one that is missing.
    entry_type status(const native_string& name, std::error_code& error) const;

    /// Closes the descriptor, if directories have one, while only directories below this one are
    /// used. The remaining entries are read into memory.
    void suspend(std::error_code& error);
    /// Undoes `suspend`; opens the directory again through \p child, a directory in this one.
    void resume(const directory_stream& child, std::error_code& error);

private:
    struct state;

    std::unique_ptr<state> m_state;
};

} // namespace zvutil::impl
