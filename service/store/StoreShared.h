// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/DamageReport.h"
#include "store/DataVersion.h"
#include "store/Reserve.h"
#include "text/SharedVocabulary.h"

#include <memory>
#include <mutex>
#include <optional>

namespace placesd
{

/// What all connections to one database share. Safe on any thread.
struct StoreShared
{
    std::timed_mutex writeLock;     ///< Writers take turns by it.
    SharedVocabulary words;         ///< Of all texts that are stored.
    bool keepsOldVersion = false;   ///< Whether a copy is made of a database before it is brought up to date.
    std::optional<Reserve> reserve; ///< For a full disk; none for a copy.
    /// Writes are refused once there is damage. None for a copy, where damage is the failure of what is done with it.
    std::optional<DamageReport> damage;

    /// Tells clients of a commit. With the write lock held.
    void advanceVersion()
    {
        if (version)
            version->advance();
    }
    std::unique_ptr<DataVersion> version; ///< Null where nobody is told, as for a copy.
};

} // namespace placesd
