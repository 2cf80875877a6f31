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

/// Whether an error means that pages of a database are damaged or inconsistent. A record that cannot be decoded is no
/// such damage; see UnreadablePlace.
bool isDamage(const SQLite::Exception &error);

/// Advice for the operator how to check and repair a file: one sentence for the log.
std::string remedyFor(const std::string &database);

/// Records whether damage was found in a database since it was opened. Thread-safe.
class DamageReport
{
public:
    /// @param database path of the file for log messages.
    explicit DamageReport(std::string database);

    /// Whether an error is damage. Logs the first damage with the file and the remedy.
    bool note(const SQLite::Exception &error);
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

private:
    const std::string m_database;
    std::atomic<bool> m_isDamaged = false;
};

} // namespace placesd
