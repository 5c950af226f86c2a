#include "impl/models/directory_stream.h"

#include <cerrno>
#include <deque>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zvutil::impl {

namespace {

struct close_directory
{
    void operator()(DIR* directory) const { closedir(directory); }
};

using directory_handle = std::unique_ptr<DIR, close_directory>;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Opens the directory \p name in \p folder, a descriptor or `AT_FDCWD`.
directory_handle openDirectory(int folder, const char* name, int flags, std::error_code& error)
{
    const int descriptor = openat(folder, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    if (descriptor < 0) {
        error = lastError();
        return nullptr;
    }
    directory_handle directory(fdopendir(descriptor));
    if (!directory) {
        error = lastError();
        close(descriptor);
    }
    return directory;
}

entry_type typeOf(const struct stat& status)
{
    if (S_ISREG(status.st_mode))
        return entry_type::regular;
    if (S_ISDIR(status.st_mode))
        return entry_type::directory;
    return S_ISLNK(status.st_mode) ? entry_type::link : entry_type::other;
}

entry_type typeOf(DIR* directory, const dirent& entry)
{
    switch (entry.d_type) {
    case DT_REG:
        return entry_type::regular;
    case DT_DIR:
        return entry_type::directory;
    case DT_UNKNOWN: {
        struct stat status;
        if (fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
            return typeOf(status);
        return entry_type::link;
    }
    case DT_LNK:
        return entry_type::link;
    default:
        return entry_type::other;
    }
}

bool isDots(const char* name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool readEntry(DIR* directory, directory_entry& entry, std::error_code& error)
{
    errno = 0;
    const dirent* found = readdir(directory);
    while (found && isDots(found->d_name))
        found = readdir(directory);
    if (!found) {
        if (errno != 0)
            error = lastError();
        return false;
    }
    entry.name = found->d_name;
    entry.type = typeOf(directory, *found);
    return true;
}

} // namespace

struct directory_stream::state
{
    directory_handle directory;
    // While the directory is suspended: its remaining entries, and the numbers that identify it.
    bool isRead = false;
    std::deque<directory_entry> rest;
    dev_t device = 0;
    ino_t inode = 0;
};

directory_stream::directory_stream(const native_string& path, std::error_code& error)
    : m_state(std::make_unique<state>())
{
    if (path.find('\0') != native_string::npos)
        error = std::make_error_code(std::errc::invalid_argument);
    else
        m_state->directory = openDirectory(AT_FDCWD, path.c_str(), 0, error);
}

directory_stream::directory_stream(const directory_stream& parent, const native_string& name,
                                   std::error_code& error)
    : m_state(std::make_unique<state>())
{
    m_state->directory =
        openDirectory(dirfd(parent.m_state->directory.get()), name.c_str(), O_NOFOLLOW, error);
}

directory_stream::directory_stream(directory_stream&& other) noexcept = default;

directory_stream& directory_stream::operator=(directory_stream&& other) noexcept = default;

directory_stream::~directory_stream() = default;

bool directory_stream::next(directory_entry& entry, std::error_code& error)
{
    if (!m_state->isRead)
        return readEntry(m_state->directory.get(), entry, error);
    if (m_state->rest.empty())
        return false;
    entry = std::move(m_state->rest.front());
    m_state->rest.pop_front();
    return true;
}

entry_type directory_stream::status(const native_string& name, std::error_code& error) const
{
    struct stat status;
    if (fstatat(dirfd(m_state->directory.get()), name.c_str(), &status, 0) == 0)
        return typeOf(status);
    if (errno != ENOENT && errno != ENOTDIR)
        error = lastError();
    return entry_type::other;
}

void directory_stream::suspend(std::error_code& error)
{
    if (!m_state->directory)
        return;
    struct stat status;
    if (fstat(dirfd(m_state->directory.get()), &status) != 0) {
        error = lastError();
        return;
    }
    m_state->device = status.st_dev;
    m_state->inode = status.st_ino;
    directory_entry entry;
    while (!m_state->isRead && readEntry(m_state->directory.get(), entry, error))
        m_state->rest.push_back(std::move(entry));
    m_state->isRead = true;
    m_state->directory.reset();
}

void directory_stream::resume(const directory_stream& child, std::error_code& error)
{
    if (m_state->directory)
        return;
    const int descriptor = dirfd(child.m_state->directory.get());
    directory_handle parent = openDirectory(descriptor, "..", 0, error);
    if (!parent)
        return;
    // Compare the numbers: the child may have been moved to another directory meanwhile.
    struct stat status;
    if (fstat(dirfd(parent.get()), &status) != 0)
        error = lastError();
    else if (status.st_dev != m_state->device || status.st_ino != m_state->inode)
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    else
        m_state->directory = std::move(parent);
}

} // namespace zvutil::impl
