#pragma once

#include <cstdint>

namespace zvutil::impl {

/// How many requests of the current thread have left the pending state so far. A manager sees by it
/// whether one that waits in its queue may have.
std::uint64_t& pending_exit_count() noexcept;

} // namespace zvutil::impl
