// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <string>

namespace SQLite
{
class Exception;
}

namespace placesd
{

/// Whether a statement failed since there is no room on the disk, or none that this process may have.
bool isLackOfRoom(const SQLite::Exception &error);

/// Room on the disk that is kept for removing places: a file of zeros beside the database. It is given up when the disk
/// is full and made anew when there is room. Guarded by the write lock, but for report().
class Reserve
{
public:
    /// @param database the file beside which the reserve is kept.
    explicit Reserve(const std::string &database);

    /// Makes the reserve as large as it should be, or as there is room for. Returns the bytes that are missing.
    long long fill();
    /// Gives the room up. False when there was none.
    bool release();

    /// Writes to the log which file system is full, once a minute at most. Safe on any thread.
    void report();

private:
    [[nodiscard]] std::string path() const;

    const std::string m_database;
    long long m_missing;
    std::atomic<std::chrono::steady_clock::rep> m_nextReport = 0; ///< Time since the clock's epoch.
};

} // namespace placesd
