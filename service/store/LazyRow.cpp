// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/LazyRow.h"

#include "store/Sql.h"
#include "store/Store.h"

namespace placesd
{

LazyRow::LazyRow(Store &store, SQLite::Statement &statement)
    : m_statement(statement)
    , m_lookup(store.statements().take(sql::SELECT_ROW))
    , m_row(store, *m_lookup)
{}

qint64 LazyRow::id() const
{
    return m_statement.getColumn(0).getInt64();
}

std::string_view LazyRow::nameKey() const
{
    const SQLite::Column key = m_statement.getColumn(1);
    const auto *data = static_cast<const char *>(key.getBlob());
    return {data, static_cast<std::size_t>(key.getBytes())};
}

const StoredRow &LazyRow::whole() const
{
    if (!m_isFetched) {
        m_lookup->reset();
        m_lookup->bind(1, static_cast<int64_t>(id()));
        m_lookup->executeStep();
        m_isFetched = true;
    }
    return m_row;
}

} // namespace placesd
