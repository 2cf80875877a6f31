// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "Status.h"
#include "store/StoreShared.h"

#include <mutex>
#include <string>

namespace placesd
{

/// Backs the database up to a file and restores it, one copy at a time, during normal operation. Thread-safe.
class BackupKeeper
{
public:
    /// @param shared state of all connections to the database; must outlive the keeper.
    BackupKeeper(std::string database, StoreShared &shared);

    /// Writes a copy of the database to a private folder beside `path`, which must be absolute, and renames it into
    /// place once it is on the disk. Replaces only an empty file or a database of places that is not in use; never a
    /// symbolic link.
    Status backUp(const std::string &path, Deadline deadline);
    /// Replaces all places by those of a backup of this or an older placesd. Checks the backup completely before
    /// changing anything.
    Status restore(const std::string &path, Deadline deadline);

private:
    void writeCopy(const std::string &path, Deadline deadline) const;
    void replaceContent(const std::string &path, Deadline deadline) const;
    void requireUsablePath(const std::string &path) const;

    const std::string m_database;
    StoreShared &m_shared;
    std::mutex m_copying;
};

} // namespace placesd
