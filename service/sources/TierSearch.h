// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/ResultOrder.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace placesd
{

using StatementPtr = std::unique_ptr<SQLite::Statement>;

/// What a search of the gazetteer's index consists of. All statements select gazetteer_sql::ROWS.
struct TierQuestion
{
    /// Tiers from this one to `lastTier` follow one another in the results.
    int firstTier;
    int lastTier;
    ResultOrder order;
    /// Tier of a row; a number below `firstTier` for a row that is not a result.
    std::function<int(const IndexRow &row)> tierOf;
    /// Selects rows in the order of the results, each that is a result among them. A row may come late: see
    /// ResultOrder::passedAt().
    StatementPtr walk;
    /// Selects each row of a tier, in any order and with others among them; null when the walk alone is as fast.
    std::function<StatementPtr(int tier)> candidates;
};

/// Finds the ids of a page. Tiers run one after the other, and only until the page is full. A tier has two plans: rank
/// all its candidates, which is fast when they are few, or walk in the order of the results and test each row, which is
/// fast when they are many. Which it is is not known beforehand, so both run in turns of doubling size and the first
/// that has the page wins. This costs at most about twice the better plan.
class TierSearch
{
public:
    explicit TierSearch(TierQuestion question);

    /// Ids of the results behind the first `position`, at most `count`. Throws SQLite::Exception.
    std::vector<int64_t> page(int position, int count);

private:
    using Results = std::vector<Ranked>;

    /// The first results of a tier, at most `wanted`.
    Results fill(int tier, std::size_t wanted);
    /// Ranks up to `rows` more candidates of a tier, of which the best are kept. True when these are all.
    bool rank(int tier, SQLite::Statement &candidates, int rows, std::size_t wanted, Results &best) const;
    /// Walks up to `rows` more rows. True when the first results of the tier are settled.
    bool walk(int tier, int rows, std::size_t wanted);

    /// Settles the results of the walk that rank before `passed`; all where there is nothing to come.
    void settle(const Ranked *passed);

    TierQuestion m_question;
    /// Results of the walk by tier, in order, and behind them those that a later row may still come before.
    std::map<int, Results> m_settled;
    std::multimap<Ranked, int, ResultOrder> m_unsettled;
};

} // namespace placesd
