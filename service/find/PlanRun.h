// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/StoredSearch.h"

#include <memory>
#include <vector>

namespace placesd
{

/// A running plan. It can pause after any row, so that two plans can take turns.
class PlanRun
{
public:
    /// @param store its deadline interrupts the run.
    PlanRun(const Store &store, const Condition &condition, const Order &order, std::unique_ptr<RowSource> source,
            std::size_t wanted, bool withKeys);
    virtual ~PlanRun() = default;
    PlanRun(const PlanRun &) = delete;
    PlanRun &operator=(const PlanRun &) = delete;

    /// Runs until the cost reaches the budget; see RowSource::cost(). True when all hits are found.
    bool advance(qint64 budget);
    /// The hits in order. To be called once, after advance() returned true.
    virtual std::vector<Hit> takeHits() = 0;

protected:
    /// Takes a row; null at the end of the source. True when no further row can change the hits.
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

/// Reads all rows of a source and keeps the first ones in order.
class ByCondition : public PlanRun
{
public:
    using PlanRun::PlanRun;
    std::vector<Hit> takeHits() override;

protected:
    bool take(const PlaceRow *row) override;

private:
    std::vector<Hit> m_hits; ///< Max heap by order.
};

/// Takes rows in order until there are enough. When the source is sorted by the first criterion only, a row waits until
/// no later row can come before it.
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

    std::vector<Hit> m_waiting; ///< Min heap by order.
    std::vector<Hit> m_hits;
};

} // namespace placesd
