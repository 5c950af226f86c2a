#include "impl/ids/random_pool.h"

#include <QRandomGenerator>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace zvutil::impl {

namespace {

constexpr std::size_t portion = 16;

/// The random bytes that a thread has left. Without a destructor, which would keep the library in
/// the process as long as the thread lives.
struct Pool
{
    std::uint64_t process;
    std::size_t left;
    // The most that one call of getentropy returns.
    std::array<unsigned char, 16 * portion> bytes;
};

thread_local Pool pool;

void fillRandom(void* target, std::size_t size)
{
    if (getentropy(target, size) == 0)
        return;
    // Fall back to Qt if getentropy fails, for example in a sandbox; Qt knows other sources, and
    // ends the process if there is none.
    auto* const words = static_cast<quint32*>(target);
    QRandomGenerator::system()->fillRange(words, static_cast<qsizetype>(size / sizeof(quint32)));
}

using ProcessMark = std::atomic<std::uint64_t>;

/// Makes a number that becomes 0 again in a forked child; null where the kernel doesn't support
/// that.
ProcessMark* makeProcessMark()
{
#if defined(MADV_WIPEONFORK)
    void* const page = mmap(nullptr, sizeof(ProcessMark), PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return nullptr;
    if (madvise(page, sizeof(ProcessMark), MADV_WIPEONFORK) == 0)
        return new (page) ProcessMark(0);
    munmap(page, sizeof(ProcessMark));
#endif
    return nullptr;
}

/// A random number of this process alone, or 0 if there is none.
std::uint64_t processNumber()
{
    // Never unmapped: threads may use the page until the process ends.
    static ProcessMark* const mark = makeProcessMark();
    if (!mark)
        return 0;
    std::uint64_t number = mark->load(std::memory_order_relaxed);
    while (number == 0) {
        std::uint64_t fresh = 0;
        fillRandom(&fresh, sizeof(fresh));
        if (mark->compare_exchange_strong(number, fresh, std::memory_order_relaxed))
            number = fresh;
    }
    return number;
}

} // namespace

std::array<unsigned char, 16> take_random()
{
    std::array<unsigned char, portion> result;
    const std::uint64_t process = processNumber();
    if (process == 0) {
        fillRandom(result.data(), result.size());
        return result;
    }
    if (pool.left == 0 || pool.process != process) {
        fillRandom(pool.bytes.data(), pool.bytes.size());
        pool.left = pool.bytes.size();
        pool.process = process;
    }
    pool.left -= portion;
    std::copy_n(pool.bytes.data() + pool.left, portion, result.begin());
    return result;
}

} // namespace zvutil::impl
