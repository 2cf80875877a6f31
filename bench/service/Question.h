// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

/// What a question may take; 0 where there is no limit.
struct Limit
{
    double ratio = 0;  ///< Most times a fetch by id at 1,000,000 places.
    double growth = 0; ///< Most times the same at 138,000 places.
};

/// A row of the table.
struct Question
{
    std::string name;
    Limit limit;
    /// Asks once. Returns how many results came, or a negative number for a failure.
    std::function<int()> ask;
};

// Baselines, which come first among the questions.
constexpr std::size_t BASELINES = 3;
constexpr char FETCH[] = "fetch by id";
constexpr char BARE_CHANNEL[] = "bare channel exchange of the same sizes";
constexpr char BARE_ROW[] = "bare SQLite row of the same size";

/// How often and how fast a question was answered.
struct Answers
{
    int found = 0;                  ///< Results; negative when it failed.
    std::vector<double> times = {}; ///< In microseconds, sorted.

    /// The time that this share of the answers took at most; 0 without answers.
    [[nodiscard]] double quantile(double share) const
    {
        const double last = static_cast<double>(times.size()) - 1;
        return times.empty() ? 0 : times[static_cast<std::size_t>(std::lround(share * last))];
    }
    [[nodiscard]] double median() const { return quantile(0.5); }
};

} // namespace bench
