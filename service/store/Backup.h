// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "Status.h"
#include "store/StoreShared.h"

#include <mutex>
#include <string>

namespace placesd
{

/// Copies the database into a file and back, one copy at a time, while others read and write. Safe on any thread.
class BackupKeeper
{
public:
    /// @param shared by all connections to the database; it outlives the keeper.
    BackupKeeper(std::string database, StoreShared &shared);

    /// Writes a copy of the database into a private folder beside `path`, which has to be absolute, and moves it into
    /// place once it is on the disk. Only an empty file and a database of places are replaced, none that is in use, and
    /// no symbolic link.
    Status backUp(const std::string &path, Deadline deadline);
    /// Puts the places of a copy that backUp() made, or an older placesd, in the stead of those that are there.
    /// Whatever is wrong with the copy is found before anything is changed.
    Status restore(const std::string &path, Deadline deadline);

private:
    void writeCopy(const std::string &path, Deadline deadline) const;
    void swapIn(const std::string &path, Deadline deadline) const;
    void requireUsablePath(const std::string &path) const;

    const std::string m_database;
    StoreShared &m_shared;
    std::mutex m_copying;
};

} // namespace placesd
