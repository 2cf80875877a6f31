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

/// State shared by all connections to one database. Thread-safe.
struct StoreShared
{
    std::timed_mutex writeLock;     ///< Serializes writers.
    SharedVocabulary words;         ///< Words of all stored texts.
    bool keepsOldVersion = false;   ///< Whether to keep a copy of the database before a migration.
    std::optional<Reserve> reserve; ///< For a full disk; unset for a copy.
    /// Writes are refused after damage. Unset for a copy, where damage fails the operation.
    std::optional<DamageReport> damage;

    /// Notifies clients of a commit. Call it with the write lock held.
    void advanceVersion()
    {
        if (version)
            version->advance();
    }
    std::unique_ptr<DataVersion> version; ///< Null without clients to notify, for example for a copy.
};

} // namespace placesd
