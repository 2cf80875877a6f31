// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/StatementPool.h"

namespace placesd
{

namespace
{

/// Statements of one text that are kept; a find that needs more at once prepares them anew.
constexpr std::size_t KEPT_OF_ONE_TEXT = 8;

} // namespace

StatementPool::Lease StatementPool::take(const char *sql)
{
    Idle &idle = m_idle[sql];
    // A statement that comes back finds room: a destructor takes no memory.
    idle.reserve(KEPT_OF_ONE_TEXT);
    if (idle.empty())
        return {idle, std::make_unique<SQLite::Statement>(m_database, sql)};
    Lease lease(idle, std::move(idle.back()));
    idle.pop_back();
    return lease;
}

StatementPool::Lease::~Lease()
{
    if (!m_statement)
        return;
    m_statement->tryReset();
    m_statement->clearBindings();
    if (m_idle.size() < KEPT_OF_ONE_TEXT)
        m_idle.push_back(std::move(m_statement));
}

} // namespace placesd
