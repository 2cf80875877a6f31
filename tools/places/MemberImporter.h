// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MemberKey.h"
#include "PlannedMembers.h"

#include <places/Error.h>
#include <places/PlaceManager.h>

#include <QtCore/QString>

namespace tool
{

/// What is done about a member of a file that is stored already.
enum class StoredMembers
{
    Skip,      ///< The stored place stays as it is.
    Update,    ///< The stored place takes over what the file says.
    Duplicate, ///< The member is stored once more.
};

/// What became of a member that is a place.
enum class MemberOutcome
{
    Imported,  ///< It is a new place of the store.
    Updated,   ///< The stored place was changed.
    Unchanged, ///< The stored place says all of it already.
    Skipped,   ///< It is stored already.
    Failed,    ///< The error says why.
};

/// The outcome with what there is to say about it.
struct MemberResult
{
    MemberOutcome outcome = MemberOutcome::Failed;
    qint64 id = -1; ///< Number of the stored place; -1 when there is none, as in a dry run.
    places::Error::Type error = places::Error::Success;
    QString reason = {}; ///< The service's reason for the error.
};

/// Stores members of files, one at a time on each thread.
class MemberImporter
{
public:
    struct Options
    {
        StoredMembers stored = StoredMembers::Skip;
        bool isDryRun = false; ///< Nothing is written.
        QString tag = {};      ///< A tag for new places; empty for none.
    };

    explicit MemberImporter(const Options &options)
        : m_options(options)
    {}

    /// Stores a new place, or does about the stored one what the options say. For any thread.
    [[nodiscard]] MemberResult import(places::Place &place, const MemberKey &key) const;

    /// True when two members cannot be stored at the same time: the second may be the same place as the first.
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
