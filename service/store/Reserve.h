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

/// Whether a statement failed because the disk, or this process's quota, is full.
bool isLackOfRoom(const SQLite::Exception &error);

/// Disk space reserved for removing places: a file of zeros beside the database. It is deleted when the disk is full
/// and created again when there is space. Guarded by the write lock, except report().
class Reserve
{
public:
    /// @param database the reserve is created beside this file.
    explicit Reserve(const std::string &database);

    /// Makes the reserve as large as possible, up to its full size. Returns the missing bytes.
    long long fill();
    /// Deletes the reserve. False when there was none.
    bool release();

    /// Logs which file system is full, at most once a minute. Thread-safe.
    void report();

private:
    [[nodiscard]] std::string path() const;

    const std::string m_database;
    long long m_missing;
    std::atomic<std::chrono::steady_clock::rep> m_nextReport = 0; ///< Duration since the clock's epoch.
};

} // namespace placesd
