// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Condition.h"
#include "find/Order.h"

#include <vector>

namespace placesd
{

/// Plans for finding stored places. All plans give the same places in the same order.
enum class Plan
{
    Best,        ///< The cheaper of the other plans.
    ByCondition, ///< Reads all rows of the condition's index and keeps the first ones in order.
    ByOrder      ///< Reads rows of an ordered index until there are enough.
};

/// Tests between two checks of the deadline.
constexpr int ROWS_PER_CHECK = 16;

/// A found place.
struct Hit
{
    qint64 id = 0;
    Order::Key key; ///< Has values only when they are requested.
};

/// Finds stored places. The cost depends on the number of requested places as long as an index supports the condition
/// or the order.
class StoredSearch
{
public:
    /// @param condition and order must outlive the search.
    StoredSearch(Store &store, const Condition &condition, const Order &order, Plan plan = Plan::Best)
        : m_store(store)
        , m_condition(condition)
        , m_order(order)
        , m_plan(plan)
    {}

    /// The first places in order, at most `wanted`.
    /// @param withKeys whether the hits are compared with other places.
    std::vector<Hit> first(std::size_t wanted, bool withKeys);

    /// The number of places that pass the condition.
    qint64 count();

private:
    /// A source in order, and whether it is sorted by all criteria or by the first one only.
    std::unique_ptr<RowSource> inOrder();
    std::unique_ptr<RowSource> alongOrder();

    Store &m_store;
    const Condition &m_condition;
    const Order &m_order;
    const Plan m_plan;
};

} // namespace placesd
