// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Benchmarks as ratios: a measurement divided by a baseline of the same run.
namespace bench
{

/// One line of the report.
struct Ratio
{
    std::string what;
    std::string subject;  ///< Name of the measured benchmark.
    std::string baseline; ///< Name of the baseline benchmark.
    double limit;
};

/// Runs all registered benchmarks several times and prints, for each ratio, the medians, the ratio and its limit.
/// Returns the exit status, which is 0 for any ratio, because machines are noisy.
int runAndPrint(int argc, char **argv, const std::vector<Ratio> &ratios);

} // namespace bench
