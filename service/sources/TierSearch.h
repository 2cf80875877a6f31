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

/// Description of a search in the gazetteer's index. All statements select gazetteer_sql::ROWS.
struct TierQuestion
{
    /// Results come tier by tier, from this one to `lastTier`.
    int firstTier;
    int lastTier;
    ResultOrder order;
    /// Tier of a row; less than `firstTier` for a row that is not a result.
    std::function<int(const IndexRow &row)> tierOf;
    /// Selects all results in their order, and possibly other rows. A row may come late; see ResultOrder::passedAt().
    StatementPtr walk;
    /// Selects all rows of a tier and possibly others, in any order; null when `walk` is as fast.
    std::function<StatementPtr(int tier)> candidates;
};

/// Finds the ids of a page. Tiers run one after the other until the page is full. A tier has two plans: rank all
/// candidates, which is fast when there are few, or walk in the order of the results and test each row, which is fast
/// when there are many. Their number is unknown, so both plans run in turns of doubling size until one has the page.
/// The total cost is at most about twice that of the faster plan.
class TierSearch
{
public:
    explicit TierSearch(TierQuestion question);

    /// Ids of at most `count` results after the first `position`. Throws SQLite::Exception.
    std::vector<int64_t> page(int position, int count);

private:
    using Results = std::vector<Ranked>;

    /// The first results of a tier, at most `wanted`.
    Results fill(int tier, std::size_t wanted);
    /// Ranks up to `rows` more candidates of a tier and keeps the best. True when there are no more.
    bool rank(int tier, SQLite::Statement &candidates, int rows, std::size_t wanted, Results &best) const;
    /// Walks up to `rows` more rows. True when the first results of the tier are final.
    bool walk(int tier, int rows, std::size_t wanted);

    /// Marks results of the walk as final that rank before `passed`; null for all.
    void settle(const Ranked *passed);

    TierQuestion m_question;
    /// Results of the walk by tier: final ones in order, then those that later rows may still precede.
    std::map<int, Results> m_settled;
    std::multimap<Ranked, int, ResultOrder> m_unsettled;
};

} // namespace placesd
