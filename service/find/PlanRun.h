// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/StoredSearch.h"

#include <memory>
#include <vector>

namespace placesd
{

/// A plan under way. It can be stopped after any row and goes on from there, so that two plans can take turns.
class PlanRun
{
public:
    /// @param store whose deadline interrupts the run.
    PlanRun(const Store &store, const Condition &condition, const Order &order, std::unique_ptr<RowSource> source,
            std::size_t wanted, bool withKeys);
    virtual ~PlanRun() = default;
    PlanRun(const PlanRun &) = delete;
    PlanRun &operator=(const PlanRun &) = delete;

    /// Goes on until that costs so much, see RowSource::cost(). True once all hits are there.
    bool advance(qint64 budget);
    /// The hits, in order. Once only, and after the last advance().
    virtual std::vector<Hit> takeHits() = 0;

protected:
    /// Takes a row, or null for the end of the source. True when no further row can change the hits.
    virtual bool take(const PlaceRow *row) = 0;

    [[nodiscard]] Hit hitOf(const PlaceRow &row, bool withKey) const;

    const Condition &m_condition;
    const Order &m_order;
    const std::size_t m_wanted;
    const bool m_withKeys;

private:
    const Store &m_store;
    const std::unique_ptr<RowSource> m_source;
    bool m_isDone = false;
};

/// Keeps the first of all rows that a source gives.
class ByCondition : public PlanRun
{
public:
    using PlanRun::PlanRun;
    std::vector<Hit> takeHits() override;

protected:
    bool take(const PlaceRow *row) override;

private:
    std::vector<Hit> m_hits; ///< A heap, the last in order on top.
};

/// Takes rows in order until there are enough. Where the source is sorted by the first criterion only, rows wait until
/// none that is before them can follow.
class ByOrder : public PlanRun
{
public:
    using PlanRun::PlanRun;
    std::vector<Hit> takeHits() override;

protected:
    bool take(const PlaceRow *row) override;

private:
    bool takeSorted(const PlaceRow *row);
    void settle(const PlaceRow *row);

    std::vector<Hit> m_waiting; ///< A heap, the first in order on top.
    std::vector<Hit> m_hits;
};

} // namespace placesd
