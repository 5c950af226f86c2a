#include "impl/background/pending_exit_count.h"

namespace zvutil::impl {

std::uint64_t& pending_exit_count() noexcept
{
    static thread_local std::uint64_t count = 0;
    return count;
}

} // namespace zvutil::impl
