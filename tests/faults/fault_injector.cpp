// Stands before the C library, linked first or preloaded, and lets calls on files fail. Without Qt,
// and without a sanitizer, since programs that aren't ours are started with it as well.
//
// A program that doesn't link to it gets its orders from the environment: ZV_FAULTS_FOLDER,
// ZV_FAULTS_NUMBER, ZV_FAULTS_ACTION and ZV_FAULTS_ERROR.

#include "fault_injector.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr int maxDescriptor = 65'536;
constexpr std::size_t maxFolderLength = 4'096;

std::atomic<bool> isArmed{false};
std::atomic<int> calls{0};
std::atomic<int> syncs{0};
std::atomic<const char*> struck{""};
char folder[maxFolderLength];
std::size_t folderLength = 0;
zv_fault order = {};
/// Which descriptors are of files below the folder.
std::atomic<bool> isWatched[maxDescriptor];

enum class Effect {
    None, ///< the call is made
    Failure, ///< it returns its error value, with errno set
    Half, ///< it handles half of its bytes
    HalfAndEnd, ///< the same, then the process is killed
};

/// What a call does to a file: which of them fail again while a disk is full, and which can be short.
enum class Kind {
    Look,
    Create,
    Read,
    Write,
    Change,
};

template <typename Function>
Function next(Function /*own*/, const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool isBelow(const char* path)
{
    return path && std::strncmp(path, folder, folderLength) == 0
        && (path[folderLength] == '/' || path[folderLength] == '\0');
}

bool isBelow(int descriptor)
{
    return descriptor >= 0 && descriptor < maxDescriptor && isWatched[descriptor];
}

bool isBelow(int directory, const char* path)
{
    return path && (path[0] == '/' ? isBelow(path) : isBelow(directory));
}

[[noreturn]] void endProcess()
{
    for (;;)
        kill(getpid(), SIGKILL);
}

bool canBeHit(Kind kind)
{
    switch (order.action) {
    case zv_fault_fail:
        // Nothing but a transfer is interrupted on a disk.
        return order.error != EINTR || kind == Kind::Read || kind == Kind::Write;
    case zv_fault_kill:
    case zv_fault_meanwhile:
        return true;
    case zv_fault_short:
        return kind == Kind::Read || kind == Kind::Write;
    case zv_fault_tear:
        return kind == Kind::Write;
    default:
        return false;
    }
}

Effect effect(zv_fault_action action, const char* name)
{
    if (*struck == '\0')
        struck = name;
    switch (action) {
    case zv_fault_kill:
        endProcess();
    case zv_fault_short:
        return Effect::Half;
    case zv_fault_tear:
        return Effect::HalfAndEnd;
    case zv_fault_meanwhile:
        isArmed = false;
        order.meanwhile();
        isArmed = true;
        return Effect::None;
    default:
        errno = order.error;
        return Effect::Failure;
    }
}

/// Counts a call, and tells what to do in its place.
Effect met(bool concerns, Kind kind, const char* name)
{
    if (!concerns || !isArmed)
        return Effect::None;
    const int number = ++calls;
    if (number == order.number && canBeHit(kind))
        return effect(order.action, name);
    // After a short block there is still room for names: a save that took it for a whole one would
    // fail at its last step otherwise.
    const bool takesSpace =
        kind == Kind::Write || (kind == Kind::Create && order.action == zv_fault_fail);
    return order.lasts && takesSpace && number > order.number ? effect(zv_fault_fail, name)
                                                              : Effect::None;
}

/// Notes whether a new descriptor is of a file below the folder.
int noted(int descriptor, bool concerns)
{
    if (descriptor >= 0 && descriptor < maxDescriptor)
        isWatched[descriptor] = concerns;
    return descriptor;
}

template <typename Call>
ssize_t transfer(int descriptor, std::size_t size, Kind kind, const char* name, Call call)
{
    switch (met(isBelow(descriptor), kind, name)) {
    case Effect::Failure:
        return -1;
    case Effect::Half:
        return call(size / 2 + size % 2);
    case Effect::HalfAndEnd:
        call(size / 2 + size % 2);
        endProcess();
    default:
        return call(size);
    }
}

bool needsMode(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

Kind kindOfOpen(int flags)
{
    return needsMode(flags) ? Kind::Create : Kind::Look;
}

template <typename Call>
int opened(bool concerns, int flags, const char* name, Call call)
{
    if (met(concerns, kindOfOpen(flags), name) == Effect::Failure)
        return -1;
    return noted(call(), concerns);
}

template <typename Call>
int tried(bool concerns, Kind kind, const char* name, Call call)
{
    return met(concerns, kind, name) == Effect::Failure ? -1 : call();
}

template <typename Call>
int synced(int descriptor, const char* name, Call call)
{
    const int result = tried(isBelow(descriptor), Kind::Change, name, call);
    if (result == 0 && isBelow(descriptor))
        ++syncs;
    return result;
}

/// A program that is started with orders in its environment.
struct Orders
{
    Orders()
    {
        const char* const where = std::getenv("ZV_FAULTS_FOLDER");
        if (!where)
            return;
        const zv_fault fault = {number("ZV_FAULTS_NUMBER"),
                                static_cast<zv_fault_action>(number("ZV_FAULTS_ACTION")),
                                number("ZV_FAULTS_ERROR"), 0};
        zv_faults_arm(where, &fault);
    }

    static int number(const char* name)
    {
        const char* const text = std::getenv(name);
        return text ? std::atoi(text) : 0;
    }
};

const Orders orders;

} // namespace

// NOLINTBEGIN(cert-dcl50-cpp, readability-inconsistent-declaration-parameter-name): as the C library has them
extern "C" {

void zv_faults_arm(const char* where, const zv_fault* fault)
{
    zv_faults_disarm();
    folderLength = std::strlen(where);
    if (folderLength >= maxFolderLength)
        std::abort();
    std::memcpy(folder, where, folderLength + 1);
    order = *fault;
    calls = 0;
    syncs = 0;
    struck = "";
    isArmed = true;
}

void zv_faults_disarm()
{
    isArmed = false;
}

int zv_faults_calls()
{
    return calls;
}

int zv_faults_syncs()
{
    return syncs;
}

const char* zv_faults_struck()
{
    return struck;
}

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = needsMode(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next(&open, "open");
    return opened(isBelow(path), flags, "open", [&] { return real(path, flags, mode); });
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = needsMode(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next(&open64, "open64");
    return opened(isBelow(path), flags, "open", [&] { return real(path, flags, mode); });
}

int openat(int directory, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = needsMode(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next(&openat, "openat");
    return opened(isBelow(directory, path), flags, "openat",
                  [&] { return real(directory, path, flags, mode); });
}

int openat64(int directory, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = needsMode(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next(&openat64, "openat64");
    return opened(isBelow(directory, path), flags, "openat",
                  [&] { return real(directory, path, flags, mode); });
}

int close(int descriptor)
{
    static const auto real = next(&close, "close");
    noted(descriptor, false);
    return real(descriptor);
}

ssize_t read(int descriptor, void* bytes, size_t size)
{
    static const auto real = next(&read, "read");
    return transfer(descriptor, size, Kind::Read, "read",
                    [&](size_t part) { return real(descriptor, bytes, part); });
}

ssize_t pread(int descriptor, void* bytes, size_t size, off_t offset)
{
    static const auto real = next(&pread, "pread");
    return transfer(descriptor, size, Kind::Read, "pread",
                    [&](size_t part) { return real(descriptor, bytes, part, offset); });
}

ssize_t pread64(int descriptor, void* bytes, size_t size, off64_t offset)
{
    static const auto real = next(&pread64, "pread64");
    return transfer(descriptor, size, Kind::Read, "pread",
                    [&](size_t part) { return real(descriptor, bytes, part, offset); });
}

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    static const auto real = next(&write, "write");
    return transfer(descriptor, size, Kind::Write, "write",
                    [&](size_t part) { return real(descriptor, bytes, part); });
}

ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t offset)
{
    static const auto real = next(&pwrite, "pwrite");
    return transfer(descriptor, size, Kind::Write, "pwrite",
                    [&](size_t part) { return real(descriptor, bytes, part, offset); });
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t offset)
{
    static const auto real = next(&pwrite64, "pwrite64");
    return transfer(descriptor, size, Kind::Write, "pwrite",
                    [&](size_t part) { return real(descriptor, bytes, part, offset); });
}

int fsync(int descriptor)
{
    static const auto real = next(&fsync, "fsync");
    return synced(descriptor, "fsync", [&] { return real(descriptor); });
}

int fdatasync(int descriptor)
{
    static const auto real = next(&fdatasync, "fdatasync");
    return synced(descriptor, "fdatasync", [&] { return real(descriptor); });
}

int ftruncate(int descriptor, off_t size)
{
    static const auto real = next(&ftruncate, "ftruncate");
    return tried(isBelow(descriptor), Kind::Change, "ftruncate",
                 [&] { return real(descriptor, size); });
}

int ftruncate64(int descriptor, off64_t size)
{
    static const auto real = next(&ftruncate64, "ftruncate64");
    return tried(isBelow(descriptor), Kind::Change, "ftruncate",
                 [&] { return real(descriptor, size); });
}

int rename(const char* from, const char* to) noexcept
{
    static const auto real = next(&rename, "rename");
    return tried(isBelow(from) || isBelow(to), Kind::Change, "rename",
                 [&] { return real(from, to); });
}

int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to,
              unsigned int flags) noexcept
{
    static const auto real = next(&renameat2, "renameat2");
    return tried(isBelow(fromDirectory, from) || isBelow(toDirectory, to), Kind::Change,
                 "renameat2", [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}

int link(const char* from, const char* to) noexcept
{
    static const auto real = next(&link, "link");
    return tried(isBelow(from) || isBelow(to), Kind::Create, "link",
                 [&] { return real(from, to); });
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) noexcept
{
    static const auto real = next(&linkat, "linkat");
    return tried(isBelow(fromDirectory, from) || isBelow(toDirectory, to), Kind::Create, "linkat",
                 [&] { return real(fromDirectory, from, toDirectory, to, flags); });
}

int unlink(const char* path) noexcept
{
    static const auto real = next(&unlink, "unlink");
    return tried(isBelow(path), Kind::Change, "unlink", [&] { return real(path); });
}

int unlinkat(int directory, const char* path, int flags) noexcept
{
    static const auto real = next(&unlinkat, "unlinkat");
    return tried(isBelow(directory, path), Kind::Change, "unlinkat",
                 [&] { return real(directory, path, flags); });
}

int rmdir(const char* path) noexcept
{
    static const auto real = next(&rmdir, "rmdir");
    return tried(isBelow(path), Kind::Change, "rmdir", [&] { return real(path); });
}

int mkdir(const char* path, mode_t mode) noexcept
{
    static const auto real = next(&mkdir, "mkdir");
    return tried(isBelow(path), Kind::Create, "mkdir", [&] { return real(path, mode); });
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    static const auto real = next(&fchmod, "fchmod");
    return tried(isBelow(descriptor), Kind::Change, "fchmod",
                 [&] { return real(descriptor, mode); });
}

void* mmap(void* address, size_t size, int protection, int flags, int descriptor,
           off_t offset) noexcept
{
    static const auto real = next(&mmap, "mmap");
    return met(isBelow(descriptor), Kind::Look, "mmap") == Effect::Failure
        ? MAP_FAILED
        : real(address, size, protection, flags, descriptor, offset);
}

void* mmap64(void* address, size_t size, int protection, int flags, int descriptor,
             off64_t offset) noexcept
{
    static const auto real = next(&mmap64, "mmap64");
    return met(isBelow(descriptor), Kind::Look, "mmap") == Effect::Failure
        ? MAP_FAILED
        : real(address, size, protection, flags, descriptor, offset);
}

int stat(const char* path, struct stat* status) noexcept
{
    static const auto real = next(static_cast<int (*)(const char*, struct stat*)>(&stat), "stat");
    return tried(isBelow(path), Kind::Look, "stat", [&] { return real(path, status); });
}

int stat64(const char* path, struct stat64* status) noexcept
{
    static const auto real =
        next(static_cast<int (*)(const char*, struct stat64*)>(&stat64), "stat64");
    return tried(isBelow(path), Kind::Look, "stat", [&] { return real(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept
{
    static const auto real = next(&lstat, "lstat");
    return tried(isBelow(path), Kind::Look, "lstat", [&] { return real(path, status); });
}

int lstat64(const char* path, struct stat64* status) noexcept
{
    static const auto real = next(&lstat64, "lstat64");
    return tried(isBelow(path), Kind::Look, "lstat", [&] { return real(path, status); });
}

int fstat(int descriptor, struct stat* status) noexcept
{
    static const auto real = next(&fstat, "fstat");
    return tried(isBelow(descriptor), Kind::Look, "fstat",
                 [&] { return real(descriptor, status); });
}

int fstat64(int descriptor, struct stat64* status) noexcept
{
    static const auto real = next(&fstat64, "fstat64");
    return tried(isBelow(descriptor), Kind::Look, "fstat",
                 [&] { return real(descriptor, status); });
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept
{
    static const auto real = next(&fstatat, "fstatat");
    return tried(isBelow(directory, path), Kind::Look, "fstatat",
                 [&] { return real(directory, path, status, flags); });
}

int fstatat64(int directory, const char* path, struct stat64* status, int flags) noexcept
{
    static const auto real = next(&fstatat64, "fstatat64");
    return tried(isBelow(directory, path), Kind::Look, "fstatat",
                 [&] { return real(directory, path, status, flags); });
}

int statx(int directory, const char* path, int flags, unsigned int mask,
          struct statx* status) noexcept
{
    static const auto real = next(
        static_cast<int (*)(int, const char*, int, unsigned int, struct statx*)>(&statx), "statx");
    const bool isDescriptor = path[0] == '\0' && (flags & AT_EMPTY_PATH) != 0;
    return tried(isDescriptor ? isBelow(directory) : isBelow(directory, path), Kind::Look, "statx",
                 [&] { return real(directory, path, flags, mask, status); });
}

DIR* opendir(const char* path)
{
    static const auto real = next(&opendir, "opendir");
    const bool concerns = isBelow(path);
    if (met(concerns, Kind::Look, "opendir") == Effect::Failure)
        return nullptr;
    DIR* const directory = real(path);
    if (directory)
        noted(dirfd(directory), concerns);
    return directory;
}

DIR* fdopendir(int descriptor)
{
    static const auto real = next(&fdopendir, "fdopendir");
    return met(isBelow(descriptor), Kind::Look, "fdopendir") == Effect::Failure ? nullptr
                                                                                : real(descriptor);
}

int closedir(DIR* directory)
{
    static const auto real = next(&closedir, "closedir");
    noted(dirfd(directory), false);
    return real(directory);
}

// The C library reads the entries of a directory by a call that nothing can stand before; these are
// the only callers.
dirent* readdir(DIR* directory)
{
    static const auto real = next(&readdir, "readdir");
    return met(isBelow(dirfd(directory)), Kind::Look, "readdir") == Effect::Failure
        ? nullptr
        : real(directory);
}

dirent64* readdir64(DIR* directory)
{
    static const auto real = next(&readdir64, "readdir64");
    return met(isBelow(dirfd(directory)), Kind::Look, "readdir") == Effect::Failure
        ? nullptr
        : real(directory);
}
}
// NOLINTEND(cert-dcl50-cpp, readability-inconsistent-declaration-parameter-name)
