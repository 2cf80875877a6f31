// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Condition.h"
#include "find/Order.h"

#include <vector>

namespace placesd
{

/// How the stored places that fulfil a condition are found. All plans give the same places in the same order.
enum class Plan
{
    Best,        ///< The cheaper of the others.
    ByCondition, ///< All rows of the condition's index, of which the first ones in order are kept.
    ByOrder      ///< Along an index that is in order, row by row, until there are enough.
};

/// Places that are tested between two looks at the clock.
constexpr int ROWS_PER_CHECK = 16;

/// A place that was found.
struct Hit
{
    qint64 id = 0;
    Order::Key key; ///< Its values are there only where they were asked for.
};

/// Finds stored places. Cost follows the number of places wanted as long as the condition or the order has an index
/// that serves it.
class StoredSearch
{
public:
    /// @param condition and order outlive the search.
    StoredSearch(Store &store, const Condition &condition, const Order &order, Plan plan = Plan::Best)
        : m_store(store)
        , m_condition(condition)
        , m_order(order)
        , m_plan(plan)
    {}

    /// The first places in order, as many as are wanted or there are.
    /// @param withKeys whether the hits are to be compared with others.
    std::vector<Hit> first(std::size_t wanted, bool withKeys);

    /// The number of places that fulfil the condition.
    qint64 count();

private:
    /// A source in order, and whether it is wholly so or by the first criterion only.
    std::unique_ptr<RowSource> inOrder();
    std::unique_ptr<RowSource> alongOrder();

    Store &m_store;
    const Condition &m_condition;
    const Order &m_order;
    const Plan m_plan;
};

} // namespace placesd
