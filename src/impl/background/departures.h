#pragma once

#include <cstdint>

namespace zvutil::impl {

/// The number of requests of the current thread that have left the pending state so far. A manager
/// searches its queue for such requests only when the number has changed.
std::uint64_t& departures() noexcept;

} // namespace zvutil::impl
