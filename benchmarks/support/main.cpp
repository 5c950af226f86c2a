#include "support/Quick.h"
#include "support/RatioReporter.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace {

bool quick = false;

} // namespace

bool zvbench::isQuick()
{
    return quick;
}

/// Runs all cases several times in mixed order and prints their ratios. `--quick` runs each case
/// just long enough to see that it works; all other arguments are Google Benchmark's.
int main(int argc, char* argv[])
{
    std::vector<char*> arguments{argv[0]};
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=11";
    char minimalTime[] = "--benchmark_min_time=0.03";
    char quickRepetitions[] = "--benchmark_repetitions=1";
    char quickTime[] = "--benchmark_min_time=0.0001";
    quick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    arguments.push_back(interleaving);
    arguments.push_back(quick ? quickRepetitions : repetitions);
    arguments.push_back(quick ? quickTime : minimalTime);
    arguments.insert(arguments.end(), argv + (quick ? 2 : 1), argv + argc);

    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    zvbench::RatioReporter reporter;
    const bool ran = benchmark::RunSpecifiedBenchmarks(&reporter) > 0;
    benchmark::Shutdown();
    return ran ? 0 : 1;
}
