// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MemberKey.h"
#include "PlannedMembers.h"

#include <places/Error.h>
#include <places/PlaceManager.h>

#include <QtCore/QString>

namespace tool
{

/// How to handle a member of a file that is already stored.
enum class StoredMembers
{
    Skip,      ///< Leave the stored place unchanged.
    Update,    ///< Apply the values of the file to the stored place.
    Duplicate, ///< Store the member again.
};

/// Outcome for a member that is a place.
enum class MemberOutcome
{
    Imported,  ///< Stored as a new place.
    Updated,   ///< The stored place was changed.
    Unchanged, ///< The stored place already has all values.
    Skipped,   ///< Already stored.
    Failed,    ///< `error` has the cause.
};

/// The outcome with its details.
struct MemberResult
{
    MemberOutcome outcome = MemberOutcome::Failed;
    qint64 id = -1; ///< Id of the stored place; -1 when there is none, as in a dry run.
    places::Error::Type error = places::Error::Success;
    QString reason = {}; ///< The service's reason for the error.
};

/// Stores members of files, one at a time per thread.
class MemberImporter
{
public:
    struct Options
    {
        StoredMembers stored = StoredMembers::Skip;
        bool isDryRun = false; ///< Write nothing.
        QString tag = {};      ///< Tag for new places; empty for none.
    };

    explicit MemberImporter(const Options &options)
        : m_options(options)
    {}

    /// Stores a new place, or handles the stored one according to the options. For any thread.
    [[nodiscard]] MemberResult import(places::Place &place, const MemberKey &key) const;

    /// True when two members must not be stored at the same time, because the second may be the same place as the
    /// first.
    [[nodiscard]] bool mayBeSame(const MemberKey &first, const MemberKey &second) const;

private:
    [[nodiscard]] MemberResult add(places::Place &place) const;
    /// What add() would do, or what would become of a member that a planned place is the same as.
    [[nodiscard]] MemberResult plan(const places::Place &place, const MemberKey &key) const;
    [[nodiscard]] MemberResult update(places::Place &stored, const places::Place &place) const;

    const Options m_options;
    mutable PlannedMembers m_planned; ///< Of a dry run.
    const places::PlaceManager m_manager;
};

} // namespace tool
