// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Benchmarks as ratios: what is measured against a limit that is measured in the same run.
namespace bench
{

/// One line of the outcome.
struct Ratio
{
    std::string what;
    std::string subject;  ///< Name of the benchmark that is ours.
    std::string baseline; ///< Name of the one that it is measured against.
    double limit;
};

/// Runs all registered benchmarks several times and prints, for each ratio, the medians, the ratio and its limit.
/// Returns main()'s status, which is 0 whatever the ratios are: machines are noisy.
int runAndPrint(int argc, char **argv, const std::vector<Ratio> &ratios);

} // namespace bench
