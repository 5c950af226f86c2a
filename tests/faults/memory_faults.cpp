#include "memory_faults.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#include <dlfcn.h>
#include <execinfo.h>

namespace {

std::atomic<long> live{0};
thread_local bool isArmed = false;
thread_local int left = 0;
thread_local bool isHit = false;

/// Functions of Qt that end the process, or crash, when they get no memory.
constexpr const char* fatalFunctions[] = {
    "_ZN7QObject7connectE", // use the memory for a connection without a look
    "_ZN7QObject11connectImpl",
    "_ZN7QObject11deleteLaterEv", // called by destructors, which may not throw
    "_ZN9QSettingsC", // destroy what they haven't made
    "_ZN7QThreadC",
    "_ZN16QXmlStreamWriter8setCodec", // leaves the writer without a state that it then uses
};

/// Whether the memory is for one of those functions.
bool isForFatalFunction() noexcept
{
    constexpr int maxFrames = 64;
    void* frames[maxFrames];
    const int count = backtrace(frames, maxFrames);
    return std::any_of(frames, frames + count, [](void* frame) {
        Dl_info info = {};
        if (dladdr(frame, &info) == 0 || !info.dli_sname)
            return false;
        return std::any_of(std::begin(fatalFunctions), std::end(fatalFunctions),
                           [&info](const char* name) {
                               return std::strncmp(info.dli_sname, name, std::strlen(name)) == 0;
                           });
    });
}

bool fails() noexcept
{
    if (!isArmed || --left != 0)
        return false;
    isHit = true;
    // Disarm meanwhile: a look at the stack may need memory itself.
    isArmed = false;
    const bool isFatal = isForFatalFunction();
    isArmed = true;
    return !isFatal;
}

void* counted(void* block) noexcept
{
    if (block)
        ++live;
    return block;
}

} // namespace

namespace zvtest::memory {

void arm(int number) noexcept
{
    left = number;
    isHit = false;
    isArmed = true;
}

bool disarm() noexcept
{
    isArmed = false;
    return isHit;
}

long liveBlocks() noexcept
{
    return live;
}

} // namespace zvtest::memory

#if defined(ZV_SANITIZED)

void* operator new(std::size_t size)
{
    void* const block = fails() ? nullptr : counted(std::malloc(size > 0 ? size : 1));
    if (!block)
        throw std::bad_alloc();
    return block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return fails() ? nullptr : counted(std::malloc(size > 0 ? size : 1));
}

void operator delete(void* block) noexcept
{
    if (block)
        --live;
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    operator delete(block);
}

#else

// The C library's own functions, which its replacements stand before.
extern "C" {

void* __libc_malloc(std::size_t size) noexcept; // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count,
                    std::size_t size) noexcept; // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block,
                     std::size_t size) noexcept; // NOLINT(bugprone-reserved-identifier)
void __libc_free(void* block) noexcept; // NOLINT(bugprone-reserved-identifier)

__attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept
{
    if (fails()) {
        errno = ENOMEM;
        return nullptr;
    }
    return counted(__libc_malloc(size));
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) noexcept
{
    if (fails()) {
        errno = ENOMEM;
        return nullptr;
    }
    return counted(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size) noexcept
{
    if (fails()) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const grown = __libc_realloc(block, size);
    return block ? grown : counted(grown);
}

__attribute__((visibility("default"))) void free(void* block) noexcept
{
    if (block)
        --live;
    __libc_free(block);
}
}

#endif
