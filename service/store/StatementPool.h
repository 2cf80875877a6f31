// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <memory>
#include <unordered_map>
#include <vector>

namespace placesd
{

/// The prepared statements of one connection. A statement is lent out for one execution and prepared once, so several
/// executions of the same text can be under way at a time. Belongs to the thread of its connection.
class StatementPool
{
    using Idle = std::vector<std::unique_ptr<SQLite::Statement>>;

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

        SQLite::Statement *operator->() const { return m_statement.get(); }
        SQLite::Statement &operator*() const { return *m_statement; }

    private:
        friend class StatementPool;
        Lease(Idle &idle, std::unique_ptr<SQLite::Statement> statement)
            : m_idle(idle)
            , m_statement(std::move(statement))
        {}

        Idle &m_idle;
        std::unique_ptr<SQLite::Statement> m_statement; ///< Null once it was moved away.
    };

    /// A statement, ready to be bound. Throws SQLite::Exception for a text that is no statement.
    /// @param sql lives as long as the program, and is known by its address.
    Lease take(const char *sql);

private:
    SQLite::Database &m_database;
    std::unordered_map<const char *, Idle> m_idle;
};

} // namespace placesd
