#pragma once

#include <thread>

namespace zvtest {

/// Runs \p work on two threads at once and waits for both.
template <typename Work>
void onTwoThreads(Work work)
{
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
}

} // namespace zvtest
