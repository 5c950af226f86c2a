// Generates many identifiers on four threads and looks for one that came twice:
//     check_uuid [COUNT]
// Ten million without an argument.

#include <zvutil/uuid.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

int main(int argc, char* argv[])
{
    constexpr std::size_t threadCount = 4;
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 10'000'000;
    std::vector<std::string> made(count, std::string());
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < threadCount; ++t) {
        threads.emplace_back([&made, t] {
            for (std::size_t i = t; i < made.size(); i += threadCount)
                made[i] = zvutil::uuid().text();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::sort(made.begin(), made.end());
    std::size_t repeated = 0;
    for (std::size_t i = 1; i < made.size(); ++i)
        repeated += made[i] == made[i - 1];
    std::printf("%zu identifiers from %zu threads, %zu of them repeated\n", count, threadCount,
                repeated);
    return repeated == 0 ? 0 : 1;
}
