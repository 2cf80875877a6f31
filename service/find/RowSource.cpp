// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/RowSource.h"

#include "model/PlaceId.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

namespace placesd
{

using vela::platform::places::PlaceId;

StatementSource::StatementSource(Store &store, const char *sql, const std::vector<QVariant> &bindings)
    : m_statement(store.statements().take(sql))
    , m_row(store, *m_statement)
{
    bindAll(*m_statement, bindings, 1);
}

const PlaceRow *StatementSource::next()
{
    return !m_statement->isDone() && m_statement->executeStep() ? &m_row : nullptr;
}

NameSource::NameSource(Store &store, const char *sql)
    : m_statement(store.statements().take(sql))
    , m_row(store)
{}

const PlaceRow *NameSource::next()
{
    if (m_statement->isDone() || !m_statement->executeStep())
        return nullptr;
    m_row.moveTo(m_statement->getColumn(0).getInt64(), viewOf(m_statement->getColumn(1)));
    return &m_row;
}

IdSource::IdSource(Store &store, std::vector<qint64> ids)
    : m_statement(store.statements().take(sql::SELECT_ROW))
    , m_row(store, *m_statement)
    , m_ids(std::move(ids))
{}

const PlaceRow *IdSource::next()
{
    while (m_next < m_ids.size()) {
        m_statement->reset();
        m_statement->bind(1, static_cast<int64_t>(m_ids[m_next++]));
        if (m_statement->executeStep())
            return &m_row;
    }
    return nullptr;
}

const PlaceRow *ChainedSource::next()
{
    for (; m_current < m_sources.size(); ++m_current) {
        while (const PlaceRow *row = m_sources[m_current]->next()) {
            if (m_overlap == Overlap::None || m_given.insert(row->id()).second)
                return row;
        }
    }
    return nullptr;
}

int ChainedSource::cost() const
{
    return m_current < m_sources.size() ? m_sources[m_current]->cost() : 1;
}

MergedSource::MergedSource(std::vector<std::unique_ptr<RowSource>> sources, const Order &order)
    : m_order(order)
    , m_given(PlaceId::UNDEFINED_PERSISTED_ID)
{
    for (std::unique_ptr<RowSource> &source : sources) {
        m_heads.push_back({std::move(source), nullptr, {}});
        advance(m_heads.back());
    }
}

void MergedSource::advance(Head &head)
{
    head.row = head.source->next();
    if (head.row)
        head.key = m_order.keyOf(*head.row);
}

/// A row is valid until the next call, so the source that gave it advances only then.
const PlaceRow *MergedSource::next()
{
    for (Head &head : m_heads) {
        if (head.row && head.key.id == m_given)
            advance(head);
    }
    const Head *best = nullptr;
    for (const Head &head : m_heads) {
        if (head.row && (!best || m_order(head.key, best->key)))
            best = &head;
    }
    if (!best)
        return nullptr;
    m_given = best->key.id;
    return best->row;
}

} // namespace placesd
