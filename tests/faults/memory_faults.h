#pragma once

/// Stands before the C library's memory in the program that it is linked to, so that one allocation of
/// a thread fails. Under a sanitizer, which has the C library's memory itself, only `operator new`.
namespace zvtest::memory {

/// Lets the allocation with that number, from 1, fail that this thread makes from now on.
void arm(int number) noexcept;
/// Ends that. Returns whether there was such an allocation.
bool disarm() noexcept;

/// The number of blocks that are in use in the whole process.
long liveBlocks() noexcept;

} // namespace zvtest::memory
