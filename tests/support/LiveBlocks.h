#pragma once

// Counts the blocks of memory that are in use. For one source of a program: it replaces operator new
// for the whole process.

#include <QtGlobal>

#include <atomic>
#include <cstdlib>
#include <new>

namespace zvtest {

inline std::atomic<int> liveBlocks{0};

} // namespace zvtest

// NOLINTBEGIN(misc-definitions-in-headers): they can't be inline
// Not inlined either, or GCC takes malloc and operator delete for a mismatched pair.
Q_NEVER_INLINE void* operator new(std::size_t size)
{
    void* const memory = std::malloc(size > 0 ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    ++zvtest::liveBlocks;
    return memory;
}

Q_NEVER_INLINE void operator delete(void* memory) noexcept
{
    if (memory)
        --zvtest::liveBlocks;
    std::free(memory);
}

Q_NEVER_INLINE void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    operator delete(memory);
}
// NOLINTEND(misc-definitions-in-headers)

namespace zvtest {

/// Whether the replaced operator serves the libraries as well: whether an object that one of them
/// makes is counted.
template <typename Make>
bool countsBlocksOf(Make make)
{
    const int before = liveBlocks;
    const auto made = make();
    return liveBlocks > before;
}

} // namespace zvtest
