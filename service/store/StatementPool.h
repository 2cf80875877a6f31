// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace placesd
{

/// The prepared statements of one connection. A statement is borrowed for one execution; several executions of the same
/// text can run at the same time. The number of idle statements per text and their total memory are limited. Used on
/// the thread of its connection.
class StatementPool
{
    struct Prepared
    {
        std::unique_ptr<SQLite::Statement> statement;
        std::size_t bytes = 0; ///< Memory of the statement without bound values.
    };
    using Idle = std::vector<Prepared>;

public:
    explicit StatementPool(SQLite::Database &database)
        : m_database(database)
    {}

    /// A borrowed statement. Its end resets the statement and its bound values. Must not outlive the pool.
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
        Prepared m_prepared; ///< Null statement after a move.
    };

    /// A statement, ready for binding. Throws SQLite::Exception for invalid SQL.
    /// @param sql a constant of the program; identified by its address.
    Lease take(const char *sql);

private:
    Prepared prepare(const char *sql);

    SQLite::Database &m_database;
    std::unordered_map<const char *, Idle> m_idle;
    std::size_t m_idleBytes = 0; ///< Of all idle statements.
};

} // namespace placesd
