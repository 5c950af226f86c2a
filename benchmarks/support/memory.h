#pragma once

#include <cstdint>

namespace zvbench {

/// How much the memory of the process, as it lies in RAM, rises from the making of the object on at
/// its highest. Linux only.
class PeakMemory
{
public:
    PeakMemory();

    std::int64_t bytes() const;

    /// The rise at present, without what has been freed.
    std::int64_t presentBytes() const;

private:
    std::int64_t m_before = 0;
};

} // namespace zvbench
