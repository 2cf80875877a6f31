// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace placesd
{

/// The prepared statements of one connection. A statement is lent out for one execution and prepared once, so several
/// executions of the same text can be under way at a time. Belongs to the thread of its connection. The number of idle
/// statements of one text and the memory of all of them are bounded.
class StatementPool
{
    struct Prepared
    {
        std::unique_ptr<SQLite::Statement> statement;
        std::size_t bytes = 0; ///< Memory of the statement, without what is bound to it.
    };
    using Idle = std::vector<Prepared>;

public:
    explicit StatementPool(SQLite::Database &database)
        : m_database(database)
    {}

    /// A statement in use. At its end it holds no lock and no bound value any more. The pool outlives it.
    class Lease
    {
    public:
        Lease(Lease &&) = default;
        Lease &operator=(Lease &&) = delete;
        ~Lease();

        SQLite::Statement *operator->() const { return m_prepared.statement.get(); }
        SQLite::Statement &operator*() const { return *m_prepared.statement; }

    private:
        friend class StatementPool;
        Lease(StatementPool &pool, Idle &idle, Prepared prepared)
            : m_pool(pool)
            , m_idle(idle)
            , m_prepared(std::move(prepared))
        {}

        StatementPool &m_pool;
        Idle &m_idle;
        Prepared m_prepared; ///< Without a statement once it was moved away.
    };

    /// A statement, ready to be bound. Throws SQLite::Exception for a text that is no statement.
    /// @param sql lives as long as the program, and is known by its address.
    Lease take(const char *sql);

private:
    Prepared prepare(const char *sql);

    SQLite::Database &m_database;
    std::unordered_map<const char *, Idle> m_idle;
    std::size_t m_idleBytes = 0; ///< Of all idle statements.
};

} // namespace placesd
