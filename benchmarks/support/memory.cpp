#include "support/memory.h"

#include <cstddef>
#include <fstream>
#include <string>

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
    : m_before(statusBytes("VmRSS:"))
{
    // Sets the highest value back to the current one.
    std::ofstream("/proc/self/clear_refs") << 5;
}

std::int64_t PeakMemory::bytes() const
{
    return statusBytes("VmHWM:") - m_before;
}

} // namespace zvbench
