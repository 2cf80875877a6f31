// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/PlanRun.h"

#include "store/Store.h"

#include <algorithm>
#include <utility>

namespace placesd
{

PlanRun::PlanRun(const Store &store, const Condition &condition, const Order &order, std::unique_ptr<RowSource> source,
                 std::size_t wanted, bool withKeys)
    : m_condition(condition)
    , m_order(order)
    , m_wanted(wanted)
    , m_withKeys(withKeys)
    , m_store(store)
    , m_source(std::move(source))
{}

bool PlanRun::advance(qint64 budget)
{
    for (int rows = 1; !m_isDone && budget > 0; ++rows) {
        // Only SQLite's own steps check the deadline.
        if (rows % ROWS_PER_CHECK == 0)
            m_store.requireTime();
        m_isDone = take(m_source->next());
        budget -= m_source->cost() + m_condition.cost();
    }
    return m_isDone;
}

Hit PlanRun::hitOf(const PlaceRow &row, bool withKey) const
{
    Hit hit;
    hit.id = row.id();
    if (withKey)
        hit.key = m_order.keyOf(row);
    return hit;
}

// ---------------------------------------------------------------------------------------------------- ByCondition

bool ByCondition::take(const PlaceRow *row)
{
    if (!row || m_wanted == 0)
        return true;
    if (!m_condition.test(*row))
        return false;
    const auto isBefore = [this](const Hit &a, const Hit &b) { return m_order(a.key, b.key); };
    Hit hit = hitOf(*row, true);
    if (m_hits.size() == m_wanted) {
        if (!isBefore(hit, m_hits.front()))
            return false;
        std::pop_heap(m_hits.begin(), m_hits.end(), isBefore);
        m_hits.back() = std::move(hit);
    } else {
        m_hits.push_back(std::move(hit));
    }
    std::push_heap(m_hits.begin(), m_hits.end(), isBefore);
    return false;
}

std::vector<Hit> ByCondition::takeHits()
{
    std::sort_heap(m_hits.begin(), m_hits.end(), [this](const Hit &a, const Hit &b) { return m_order(a.key, b.key); });
    return std::move(m_hits);
}

// -------------------------------------------------------------------------------------------------------- ByOrder

bool ByOrder::take(const PlaceRow *row)
{
    if (m_order.isSortedByFirst())
        return takeSorted(row);
    settle(row);
    if (!row || m_hits.size() >= m_wanted)
        return true;
    if (m_condition.test(*row)) {
        m_waiting.push_back(hitOf(*row, true));
        std::push_heap(m_waiting.begin(), m_waiting.end(),
                       [this](const Hit &a, const Hit &b) { return m_order(b.key, a.key); });
    }
    return false;
}

bool ByOrder::takeSorted(const PlaceRow *row)
{
    if (!row || m_hits.size() >= m_wanted)
        return true;
    if (m_condition.test(*row))
        m_hits.push_back(hitOf(*row, m_withKeys));
    return m_hits.size() >= m_wanted;
}

/// Moves waiting places to the hits that come before all rows from this one on; all of them at the end.
void ByOrder::settle(const PlaceRow *row)
{
    while (!m_waiting.empty() && m_hits.size() < m_wanted
           && (!row || m_order.isBeforeAllBehind(m_waiting.front().key, *row))) {
        std::pop_heap(m_waiting.begin(), m_waiting.end(),
                      [this](const Hit &a, const Hit &b) { return m_order(b.key, a.key); });
        m_hits.push_back(std::move(m_waiting.back()));
        m_waiting.pop_back();
    }
}

std::vector<Hit> ByOrder::takeHits()
{
    return std::move(m_hits);
}

} // namespace placesd
