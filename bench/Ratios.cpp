// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Ratios.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>

namespace bench
{

namespace
{

constexpr int ROUNDS = 9;

/// Collects the time of each run, in nanoseconds.
class Collector : public benchmark::BenchmarkReporter
{
public:
    explicit Collector(std::map<std::string, std::vector<double>> &times)
        : m_times(times)
    {}
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs)
            m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
    }

private:
    std::map<std::string, std::vector<double>> &m_times;
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

} // namespace

int runAndPrint(int argc, char **argv, const std::vector<Ratio> &ratios)
{
    benchmark::Initialize(&argc, argv);
    std::map<std::string, std::vector<double>> times;
    // In rounds, so that a temporary slowdown of the machine affects both sides of a ratio.
    for (int round = 0; round < ROUNDS; ++round) {
        Collector collector(times);
        benchmark::RunSpecifiedBenchmarks(&collector);
    }
    std::printf("%-52s %10s %10s %7s %7s\n", "what", "ours", "baseline", "ratio", "limit");
    for (const Ratio &ratio : ratios) {
        const double ours = median(times[ratio.subject]);
        const double baseline = median(times[ratio.baseline]);
        const double value = baseline > 0 ? ours / baseline : 0;
        std::printf("%-52s %7.2f us %7.2f us %7.2f %7.2f%s\n", ratio.what.c_str(), ours / 1000, baseline / 1000, value,
                    ratio.limit, value > ratio.limit ? "  above" : "");
    }
    return 0;
}

} // namespace bench
