// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "MemberImporter.h"

#include "PlaceContent.h"
#include "StoredMember.h"

#include <places/Place.h>

namespace tool
{

using namespace places;

namespace
{

MemberResult resultOf(MemberOutcome outcome, Error::Type error, const Place &place)
{
    if (error != Error::Success)
        return {MemberOutcome::Failed, place.id(), error, Error::reason(error)};
    return {outcome, place.id()};
}

} // namespace

MemberResult MemberImporter::import(Place &place, const MemberKey &key) const
{
    if (m_options.stored == StoredMembers::Duplicate)
        return add(place);
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> stored = findStoredMember(key, error);
    if (error != Error::Success)
        return resultOf(MemberOutcome::Failed, error, place);
    if (!stored)
        return m_options.isDryRun ? plan(place, key) : add(place);
    return m_options.stored == StoredMembers::Update ? update(*stored, place)
                                                     : resultOf(MemberOutcome::Skipped, Error::Success, *stored);
}

bool MemberImporter::mayBeSame(const MemberKey &first, const MemberKey &second) const
{
    return m_options.stored != StoredMembers::Duplicate && (first.isSameById(second) || first.isSameByName(second));
}

MemberResult MemberImporter::add(Place &place) const
{
    if (!m_options.tag.isEmpty())
        place.addTag(m_options.tag);
    const Error::Type error = m_options.isDryRun ? Error::Success : m_manager.addPlace(&place);
    return resultOf(MemberOutcome::Imported, error, place);
}

MemberResult MemberImporter::plan(const Place &place, const MemberKey &key) const
{
    using Outcome = PlannedMembers::Outcome;
    const Outcome outcome = m_planned.plan(key, PlaceContent::of(place));
    if (outcome == Outcome::New)
        return {MemberOutcome::Imported};
    if (m_options.stored == StoredMembers::Skip)
        return {MemberOutcome::Skipped};
    return {outcome == Outcome::Same ? MemberOutcome::Unchanged : MemberOutcome::Updated};
}

MemberResult MemberImporter::update(Place &stored, const Place &place) const
{
    const PlaceContent before = PlaceContent::of(stored);
    const PlaceContent after = before.with(PlaceContent::of(place));
    if (after == before)
        return resultOf(MemberOutcome::Unchanged, Error::Success, stored);
    after.applyTo(stored);
    const Error::Type error = m_options.isDryRun ? Error::Success : m_manager.updatePlace(&stored);
    return resultOf(MemberOutcome::Updated, error, stored);
}

} // namespace tool
