// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/FileCopy.h"

#include "Channel.h"

#include <SQLiteCpp/Backup.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace placesd
{

using vela::system::channel::Descriptor;

namespace
{

/// Pages copied between two checks of the deadline.
constexpr int PAGES_PER_STEP = 1000;

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void sync(const std::string &path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen() || ::fsync(file.get()) != 0)
        fail(path + " cannot be written to the disk");
}

} // namespace

void copyPages(SQLite::Database &to, SQLite::Database &from, Deadline deadline)
{
    SQLite::Backup backup(to, from);
    for (int result = SQLITE_OK; result != SQLITE_DONE;) {
        result = backup.executeStep(PAGES_PER_STEP);
        if (result == SQLITE_BUSY || result == SQLITE_LOCKED)
            throw SQLite::Exception("another program is using it", result);
        if (hasPassed(deadline))
            throw SQLite::Exception("copying took too long", SQLITE_INTERRUPT);
    }
}

void writeSnapshot(const std::string &database, const std::string &fresh, Deadline deadline)
{
    SQLite::Database live(database, SQLite::OPEN_READONLY);
    SQLite::Database target(fresh, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    // A snapshot stays the same during other writes; without it each write would restart the copy.
    SQLite::Transaction snapshot(live);
    live.execAndGet("SELECT count(*) FROM sqlite_master");
    copyPages(target, live, deadline);
    // Keep everything in one file.
    target.exec("PRAGMA journal_mode = DELETE");
}

void moveIntoPlace(const std::string &fresh, const std::string &path)
{
    sync(fresh);
    if (std::rename(fresh.c_str(), path.c_str()) != 0)
        fail(path + " cannot be renamed into place");
    const std::string folder = std::filesystem::path(path).parent_path();
    sync(folder.empty() ? "." : folder);
}

} // namespace placesd
