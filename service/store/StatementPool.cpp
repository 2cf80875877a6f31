// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/StatementPool.h"

#include "Limits.h"

#include <sqlite3.h>

namespace placesd
{

StatementPool::Lease StatementPool::take(const char *sql)
{
    Idle &idle = m_idle[sql];
    // Reserved in advance: the destructor of a lease must not allocate.
    idle.reserve(limits::IDLE_STATEMENTS_OF_TEXT);
    if (idle.empty())
        return {*this, idle, prepare(sql)};
    Lease lease(*this, idle, std::move(idle.back()));
    idle.pop_back();
    m_idleBytes -= lease.m_prepared.bytes;
    return lease;
}

StatementPool::Prepared StatementPool::prepare(const char *sql)
{
    Prepared prepared{std::make_unique<SQLite::Statement>(m_database, sql)};
    // SQLite lists its statements newest first.
    sqlite3_stmt *newest = sqlite3_next_stmt(m_database.getHandle(), nullptr);
    prepared.bytes = static_cast<std::size_t>(sqlite3_stmt_status(newest, SQLITE_STMTSTATUS_MEMUSED, 0));
    return prepared;
}

StatementPool::Lease::~Lease()
{
    if (!m_prepared.statement)
        return;
    m_prepared.statement->tryReset();
    m_prepared.statement->clearBindings();
    if (m_idle.size() == limits::IDLE_STATEMENTS_OF_TEXT
        || m_pool.m_idleBytes + m_prepared.bytes > limits::IDLE_STATEMENT_MEMORY)
        return;
    m_pool.m_idleBytes += m_prepared.bytes;
    m_idle.push_back(std::move(m_prepared));
}

} // namespace placesd
