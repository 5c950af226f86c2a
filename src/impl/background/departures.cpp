#include "impl/background/departures.h"

namespace zvutil::impl {

std::uint64_t& departures() noexcept
{
    static thread_local std::uint64_t count = 0;
    return count;
}

} // namespace zvutil::impl
