#include "impl/models/directory_stream.h"

#include <string_view>
#include <utility>

#include <windows.h>

namespace zvutil::impl {

namespace {

struct close_search
{
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};

struct close_file
{
    using pointer = HANDLE;
    void operator()(HANDLE file) const
    {
        if (file != INVALID_HANDLE_VALUE)
            CloseHandle(file);
    }
};

std::error_code last_error()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

bool is_missing(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND
        || error == ERROR_INVALID_NAME || error == ERROR_BAD_NETPATH;
}

/// The path in the form that the system accepts at any length.
native_string call_path(const native_string& path)
{
    // Directories have a lower limit than files, so long paths begin early.
    constexpr std::size_t long_path = 240;
    constexpr std::wstring_view device = L"\\\\?\\";
    if (path.size() < long_path || path.compare(0, device.size(), device) == 0)
        return path;
    native_string full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.compare(0, 2, L"\\\\") == 0)
        return native_string(device) + L"UNC" + full.substr(1);
    return native_string(device) + full;
}

entry_type type_of(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? entry_type::directory
                                                        : entry_type::regular;
}

entry_type type_of(const WIN32_FIND_DATAW& found)
{
    // Only these two reparse points lead elsewhere; others are files that are stored elsewhere. Wine doesn't
    // tell the tag of a link to a directory: were it followed, a loop of links would have no end.
    const bool is_link = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0
        && (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK
            || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT || found.dwReserved0 == 0);
    return is_link ? entry_type::link : type_of(found.dwFileAttributes);
}

bool is_directory(const native_string& path)
{
    const DWORD attributes = GetFileAttributesW(call_path(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && type_of(attributes) == entry_type::directory;
}

bool is_dots(std::wstring_view name)
{
    return name == L"." || name == L"..";
}

} // namespace

struct directory_stream::state
{
    // The path, with a separator at its end, unless it is a drive alone.
    native_string path;
    std::unique_ptr<HANDLE, close_search> search;
    // Whether `found` holds an entry that wasn't returned yet; opening the search reads the first
    // one.
    bool has_found = false;
    WIN32_FIND_DATAW found = {};
};

directory_stream::directory_stream(const native_string& path, std::error_code& error)
    : m_state(std::make_unique<state>())
{
    if (path.empty() || path.find(L'\0') != native_string::npos) {
        error = std::make_error_code(std::errc::invalid_argument);
        return;
    }
    m_state->path = path;
    const HANDLE search =
        FindFirstFileExW(call_path(path + L'*').c_str(), FindExInfoBasic, &m_state->found,
                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search != INVALID_HANDLE_VALUE) {
        m_state->search.reset(search);
        m_state->has_found = true;
        return;
    }
    error = last_error();
    // FindFirstFile reports a directory without entries, such as an empty drive, as an error.
    if (error.value() == ERROR_FILE_NOT_FOUND && is_directory(path))
        error.clear();
}

directory_stream::directory_stream(const directory_stream& parent, const native_string& name,
                                   std::error_code& error)
    : directory_stream(parent.m_state->path + name + L'\\', error)
{
}

directory_stream::directory_stream(directory_stream&& other) noexcept = default;

directory_stream& directory_stream::operator=(directory_stream&& other) noexcept = default;

directory_stream::~directory_stream() = default;

bool directory_stream::next(directory_entry& entry, std::error_code& error)
{
    if (!m_state->search)
        return false;
    do {
        if (!m_state->has_found && !FindNextFileW(m_state->search.get(), &m_state->found)) {
            if (GetLastError() != ERROR_NO_MORE_FILES)
                error = last_error();
            return false;
        }
        m_state->has_found = false;
    } while (is_dots(m_state->found.cFileName));
    entry.name = m_state->found.cFileName;
    entry.type = type_of(m_state->found);
    return true;
}

entry_type directory_stream::status(const native_string& name, std::error_code& error) const
{
    const std::unique_ptr<HANDLE, close_file> file(
        CreateFileW(call_path(m_state->path + name).c_str(), FILE_READ_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION information;
    if (file.get() != INVALID_HANDLE_VALUE && GetFileInformationByHandle(file.get(), &information))
        return type_of(information.dwFileAttributes);
    if (!is_missing(GetLastError()))
        error = last_error();
    return entry_type::other;
}

void directory_stream::suspend(std::error_code& /*error*/)
{
}

void directory_stream::resume(const directory_stream& /*child*/, std::error_code& /*error*/)
{
}

} // namespace zvutil::impl
