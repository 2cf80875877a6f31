// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

/// Limits of a query; 0 for none.
struct Limit
{
    double ratio = 0;  ///< Maximum ratio to a fetch by id at 1,000,000 places.
    double growth = 0; ///< Maximum ratio to the same query at 138,000 places.
};

/// A row of the table.
struct Question
{
    std::string name;
    Limit limit;
    /// Runs the query. Returns the number of results, or a negative number on a failure.
    std::function<int()> ask;
};

// Baselines, which are the first queries.
constexpr std::size_t BASELINES = 3;
constexpr char FETCH[] = "fetch by id";
constexpr char BARE_CHANNEL[] = "bare channel exchange of the same sizes";
constexpr char BARE_ROW[] = "bare SQLite row of the same size";

/// Number of results and times of a query.
struct Answers
{
    int found = 0;                  ///< Number of results; negative on a failure.
    std::vector<double> times = {}; ///< In microseconds, sorted.

    /// The time within which this share of the answers arrived; 0 without answers.
    [[nodiscard]] double quantile(double share) const
    {
        const double last = static_cast<double>(times.size()) - 1;
        return times.empty() ? 0 : times[static_cast<std::size_t>(std::lround(share * last))];
    }
    [[nodiscard]] double median() const { return quantile(0.5); }
};

} // namespace bench
