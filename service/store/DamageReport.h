// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <string>

namespace SQLite
{
class Exception;
}

namespace placesd
{

/// Whether an error says that the pages of a database, or what they say of each other, are damaged. A place that cannot
/// be decoded is no such damage: see UnreadablePlace.
bool isDamage(const SQLite::Exception &error);

/// How the operator finds out what is damaged in a file, and rescues what is not: one sentence for the log.
std::string remedyFor(const std::string &database);

/// Whether damage was seen in a database since it was opened. Safe on any thread.
class DamageReport
{
public:
    /// @param database the file, as the operator knows it.
    explicit DamageReport(std::string database);

    /// Whether an error is damage. The first that is goes to the log, with the file and the remedy.
    bool note(const SQLite::Exception &error);
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

private:
    const std::string m_database;
    std::atomic<bool> m_isDamaged = false;
};

} // namespace placesd
