// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/StoredSearch.h"

#include "find/FindSql.h"
#include "find/NearestSource.h"
#include "find/PlanRun.h"
#include "store/Store.h"

#include <algorithm>
#include <limits>

namespace placesd
{

namespace sql = find_sql;

namespace
{

/// An index with at most this many rows is read completely; no other plan can be much faster.
constexpr qint64 FEW_ROWS = 512;
/// Cost limit of the first turn when two plans take turns. Each pair of turns doubles the limit, so the slower plan
/// costs at most twice as much as the faster one.
constexpr qint64 FIRST_TURN = 8192;
/// Cost of reading along the order before an index is opened that is slow to open.
constexpr qint64 PREVIEW_COST = 2048;
constexpr qint64 WITHOUT_LIMIT = std::numeric_limits<qint64>::max();

/// Statements for all orders except distance, by Order::By.
struct Scan
{
    const char *up;
    const char *down;
    bool givesNames; ///< Whether the statements select names only.
};
constexpr Scan SCANS[] = {
    {sql::BY_ID, sql::BY_ID_DOWN, false},              // Id
    {sql::BY_RELEVANCE, sql::BY_RELEVANCE_DOWN, true}, // Relevance
    {sql::BY_NAME, sql::BY_NAME_DOWN, true},           // Name
    {sql::BY_USE, sql::BY_USE_DOWN, false},            // LastUse
    {sql::BY_CREATION, sql::BY_CREATION_DOWN, false},  // Creation
    {sql::BY_UPDATE, sql::BY_UPDATE_DOWN, false},      // Update
    {sql::BY_COUNT, sql::BY_COUNT_DOWN, false},        // UsageCount
};

} // namespace

std::unique_ptr<RowSource> StoredSearch::alongOrder()
{
    const Order::Criterion &first = m_order.first();
    if (first.by != Order::By::Distance) {
        const Scan &scan = SCANS[static_cast<std::size_t>(first.by)];
        const char *statement = first.isDescending ? scan.down : scan.up;
        if (scan.givesNames)
            return std::make_unique<NameSource>(m_store, statement);
        return std::make_unique<StatementSource>(m_store, statement);
    }
    std::vector<std::unique_ptr<RowSource>> sources;
    sources.push_back(std::make_unique<NearestSource>(m_store, first));
    sources.push_back(
        std::make_unique<StatementSource>(m_store, first.isDescending ? sql::NOWHERE_DOWN : sql::NOWHERE));
    return std::make_unique<ChainedSource>(std::move(sources), ChainedSource::Overlap::None);
}

std::unique_ptr<RowSource> StoredSearch::inOrder()
{
    return m_condition.hasSortedSource(m_order) ? m_condition.sortedSource(m_store, m_order) : alongOrder();
}

std::vector<Hit> StoredSearch::first(std::size_t wanted, bool withKeys)
{
    std::unique_ptr<ByOrder> byOrder;
    if (m_plan == Plan::Best && m_condition.isSlowToOpen()) {
        byOrder = std::make_unique<ByOrder>(m_store, m_condition, m_order, inOrder(), wanted, withKeys);
        if (byOrder->advance(PREVIEW_COST))
            return byOrder->takeHits();
    }
    Condition::Source source;
    if (m_plan != Plan::ByOrder && m_condition.hasSource())
        source = m_condition.source(m_store, m_order, FEW_ROWS);
    if (!source.rows) {
        ByOrder run(m_store, m_condition, m_order, inOrder(), wanted, withKeys);
        run.advance(WITHOUT_LIMIT);
        return run.takeHits();
    }
    // A short list needs only a short turn.
    const bool isShort = source.length < FEW_ROWS;
    const qint64 listCost = source.length * (source.rows->cost() + m_condition.cost());
    const qint64 firstTurn = isShort ? std::min(FIRST_TURN, listCost + 1) : FIRST_TURN;
    ByCondition byCondition(m_store, m_condition, m_order, std::move(source.rows), wanted, withKeys);
    const bool isOnlyPlan = m_plan == Plan::ByCondition || (isShort && !m_condition.hasSortedSource(m_order));
    if (isOnlyPlan) {
        byCondition.advance(WITHOUT_LIMIT);
        return byCondition.takeHits();
    }
    if (!byOrder)
        byOrder = std::make_unique<ByOrder>(m_store, m_condition, m_order, inOrder(), wanted, withKeys);
    for (qint64 turn = firstTurn;; turn *= 2) {
        if (byOrder->advance(turn))
            return byOrder->takeHits();
        if (byCondition.advance(turn))
            return byCondition.takeHits();
    }
}

qint64 StoredSearch::count()
{
    if (const std::optional<qint64> known = m_condition.count(m_store))
        return *known;
    const std::unique_ptr<RowSource> source = m_condition.hasSource()
                                                  ? m_condition.source(m_store, m_order, FEW_ROWS).rows
                                                  : std::make_unique<StatementSource>(m_store, sql::BY_ID);
    qint64 count = 0;
    int rows = 1;
    for (const PlaceRow *row = source->next(); row; row = source->next(), ++rows) {
        if (rows % ROWS_PER_CHECK == 0)
            m_store.requireTime();
        count += m_condition.test(*row) ? 1 : 0;
    }
    return count;
}

} // namespace placesd
