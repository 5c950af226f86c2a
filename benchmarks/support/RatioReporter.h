#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace zvbench {

/// Prints, for each case of a benchmark program, the time of each contender and its ratio to the
/// floor.
///
/// A benchmark is named CASE/CONTENDER; the contender "floor" does the least work that gives the
/// result, "library" is ours, all others are peers. Times are medians over the repetitions, in CPU
/// time, or in wall time or the time that is told where the benchmark asks for it. A counter "peak"
/// is shown behind them.
class RatioReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Measured
    {
        std::vector<double> times;
        std::vector<double> peaks;
    };
    using Contenders = std::map<std::string, Measured>;

    static void printCase(const std::string& name, const Contenders& contenders);

    std::map<std::string, Contenders> m_cases;
};

} // namespace zvbench
