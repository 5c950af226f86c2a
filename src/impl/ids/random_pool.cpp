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
struct byte_pool
{
    std::uint64_t process;
    std::size_t left;
    // The most that one call of getentropy returns.
    std::array<unsigned char, 16 * portion> bytes;
};

thread_local byte_pool pool;

void fill_random(void* target, std::size_t size)
{
    if (getentropy(target, size) == 0)
        return;
    // Fall back to Qt if getentropy fails, for example in a sandbox; Qt knows other sources, and
    // ends the process if there is none.
    auto* const words = static_cast<quint32*>(target);
    QRandomGenerator::system()->fillRange(words, static_cast<qsizetype>(size / sizeof(quint32)));
}

using process_mark = std::atomic<std::uint64_t>;

/// Makes a number that becomes 0 again in a forked child; null where the kernel doesn't support
/// that.
process_mark* make_process_mark()
{
#if defined(MADV_WIPEONFORK)
    void* const page = mmap(nullptr, sizeof(process_mark), PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED)
        return nullptr;
    if (madvise(page, sizeof(process_mark), MADV_WIPEONFORK) == 0)
        return new (page) process_mark(0);
    munmap(page, sizeof(process_mark));
#endif
    return nullptr;
}

/// A random number of this process alone, or 0 if there is none.
std::uint64_t process_number()
{
    // Never unmapped: threads may use the page until the process ends.
    static process_mark* const mark = make_process_mark();
    if (!mark)
        return 0;
    std::uint64_t number = mark->load(std::memory_order_relaxed);
    while (number == 0) {
        std::uint64_t fresh = 0;
        fill_random(&fresh, sizeof(fresh));
        if (mark->compare_exchange_strong(number, fresh, std::memory_order_relaxed))
            number = fresh;
    }
    return number;
}

} // namespace

std::array<unsigned char, 16> take_random()
{
    std::array<unsigned char, portion> result;
    const std::uint64_t process = process_number();
    if (process == 0) {
        fill_random(result.data(), result.size());
        return result;
    }
    if (pool.left == 0 || pool.process != process) {
        fill_random(pool.bytes.data(), pool.bytes.size());
        pool.left = pool.bytes.size();
        pool.process = process;
    }
    pool.left -= portion;
    std::copy_n(pool.bytes.data() + pool.left, portion, result.begin());
    return result;
}

} // namespace zvutil::impl
