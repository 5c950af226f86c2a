#include "support/memory.h"

#include <fstream>
#include <string>

#include <malloc.h>

namespace zvbench {

namespace {

std::int64_t statusBytes(const std::string& field)
{
    std::ifstream status("/proc/self/status");
    std::string name;
    std::int64_t kilobytes = 0;
    while (status >> name) {
        if (name == field && status >> kilobytes)
            return 1024 * kilobytes;
    }
    return 0;
}

} // namespace

PeakMemory::PeakMemory()
{
    // What earlier work has freed and malloc keeps would be used again and not show.
    malloc_trim(0);
    m_before = statusBytes("VmRSS:");
    // Sets the highest value back to the current one.
    std::ofstream("/proc/self/clear_refs") << 5;
}

std::int64_t PeakMemory::bytes() const
{
    return statusBytes("VmHWM:") - m_before;
}

std::int64_t PeakMemory::presentBytes() const
{
    malloc_trim(0);
    return statusBytes("VmRSS:") - m_before;
}

} // namespace zvbench
