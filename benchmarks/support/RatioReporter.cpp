#include "support/RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace zvbench {

namespace {

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void printRatio(double time, double base)
{
    if (base > 0)
        std::printf(" %10.2f", time / base);
    else
        std::printf(" %10s", "-");
}

} // namespace

bool RatioReporter::ReportContext(const Context& /*context*/)
{
    return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred) {
            std::printf("ERROR %s: %s\n", name.c_str(), run.error_message.c_str());
            continue;
        }
        if (run.run_type != Run::RT_Iteration)
            continue;
        const std::size_t slash = name.rfind('/');
        const bool wall = !run.run_name.time_type.empty();
        const double seconds = wall ? run.real_accumulated_time : run.cpu_accumulated_time;
        Measured& measured = m_cases[name.substr(0, slash)][name.substr(slash + 1)];
        measured.times.push_back(1e9 * seconds / static_cast<double>(run.iterations));
        const auto peak = run.counters.find("peak");
        if (peak != run.counters.end())
            measured.peaks.push_back(peak->second);
    }
}

void RatioReporter::Finalize()
{
    std::printf("%-24s %-24s %14s %10s %10s\n", "case", "contender", "ns", "x floor", "x library");
    for (const auto& [name, contenders] : m_cases)
        printCase(name, contenders);
}

void RatioReporter::printCase(const std::string& name, const Contenders& contenders)
{
    std::vector<std::pair<double, std::string>> byTime;
    std::map<std::string, double> medians;
    for (const auto& [contender, measured] : contenders) {
        medians[contender] = median(measured.times);
        byTime.emplace_back(medians[contender], contender);
    }
    std::sort(byTime.begin(), byTime.end());
    for (const auto& [time, contender] : byTime) {
        std::printf("%-24s %-24s %14.1f", name.c_str(), contender.c_str(), time);
        printRatio(time, medians["floor"]);
        printRatio(time, medians["library"]);
        const std::vector<double>& peaks = contenders.at(contender).peaks;
        if (!peaks.empty())
            std::printf("   peak %.2f", median(peaks));
        std::printf("\n");
    }
}

} // namespace zvbench
