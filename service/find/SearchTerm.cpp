// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/SearchTerm.h"

#include "find/FindSql.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"
#include "text/Expansion.h"

#include <algorithm>

namespace placesd
{

namespace sql = find_sql;

namespace
{

/// Places whose texts have the words, of which a find keeps the ids. With more it reads the texts of those that the
/// rest of its rule leaves.
constexpr int MOST_IDS = 4096;

/// The index of the names is the only one that another process may write to unnoticed.
QByteArray expressionOf(Store &store, const Reading &reading)
{
    return QByteArray::fromStdString(reading.inNames ? reading.expression()
                                                     : matchExpressions(reading, store.vocabulary()).exact);
}

} // namespace

SearchTerm::SearchTerm(Store &store, const QString &term, Reading reading)
    : m_store(store)
    , m_expression(expressionOf(store, reading))
    , m_test(term, std::move(reading))
{}

const std::optional<std::vector<qint64>> &SearchTerm::ids() const
{
    if (m_isCollected)
        return m_ids;
    m_isCollected = true;
    std::vector<qint64> ids;
    const auto row = m_store.statements().take(sql::SOME_IN_TEXTS);
    bindAll(*row, {m_expression, MOST_IDS + 1}, 1);
    while (!m_expression.isEmpty() && row->executeStep())
        ids.push_back(row->getColumn(0).getInt64());
    if (ids.size() <= MOST_IDS) {
        std::sort(ids.begin(), ids.end());
        m_ids = std::move(ids);
    }
    return m_ids;
}

bool SearchTerm::isIn(const PlaceRow &row) const
{
    if (m_test.isOfNames() || !row.isStored() || !ids())
        return row.passes(m_test);
    return std::binary_search(m_ids->begin(), m_ids->end(), row.id());
}

int SearchTerm::cost() const
{
    return m_test.isOfNames() || ids() ? 0 : 10 * RowSource::WHOLE_ROW;
}

std::unique_ptr<RowSource> SearchTerm::places() const
{
    if (!m_test.isOfNames() && ids())
        return std::make_unique<IdSource>(m_store, *m_ids);
    const char *statement = m_test.isOfNames() ? sql::WITH_WORDS : sql::IN_TEXTS;
    return std::make_unique<StatementSource>(m_store, statement, std::vector<QVariant>{m_expression});
}

qint64 SearchTerm::count(qint64 limit) const
{
    if (!m_test.isOfNames() && ids())
        return std::min(limit, static_cast<qint64>(m_ids->size()));
    if (!m_test.isOfNames() && limit <= MOST_IDS)
        return limit;
    const auto known = m_counts.find(limit);
    if (known != m_counts.end())
        return known->second;
    const char *statement = m_test.isOfNames() ? sql::COUNT_SOME_WITH_WORDS : sql::COUNT_SOME_IN_TEXTS;
    const auto row = m_store.statements().take(statement);
    bindAll(*row, {m_expression, limit}, 1);
    row->executeStep();
    return m_counts[limit] = row->getColumn(0).getInt64();
}

} // namespace placesd
