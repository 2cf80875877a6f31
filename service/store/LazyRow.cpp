// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/LazyRow.h"

#include "store/Sql.h"
#include "store/Store.h"

#include <sqlite3.h>

namespace placesd
{

LazyRow::LazyRow(Store &store)
    : m_lookup(store.statements().take(sql::SELECT_ROW))
    , m_row(store, *m_lookup)
{}

void LazyRow::moveTo(qint64 id, std::optional<std::string_view> nameKey)
{
    m_id = id;
    m_nameKey = nameKey;
    m_isFetched = false;
}

const StoredRow &LazyRow::whole() const
{
    if (!m_isFetched) {
        m_lookup->reset();
        m_lookup->bind(1, static_cast<int64_t>(m_id));
        if (!m_lookup->executeStep())
            throw SQLite::Exception("an index has a place that is not stored", SQLITE_CORRUPT);
        m_isFetched = true;
    }
    return m_row;
}

} // namespace placesd
