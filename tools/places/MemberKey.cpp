// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "MemberKey.h"

#include "formats/Vocabulary.h"

#include <places/Place.h>
#include <places/Utilities.h>

namespace tool
{

using namespace places;

namespace
{

QString fileIdOf(const Place &place)
{
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        const AuxiliaryData data = place.auxiliaryData(i);
        if (data.type() == QLatin1String(formats::vocabulary::FOREIGN_MEMBERS))
            return data.property(QLatin1String(MemberKey::ID_PROPERTY));
    }
    return {};
}

} // namespace

MemberKey MemberKey::of(const Place &place)
{
    return {fileIdOf(place), place.name().toCaseFolded(), place.primaryCoordinates(), place.primaryAddress()};
}

bool MemberKey::isSameById(const MemberKey &other) const
{
    return !id.isEmpty() && id == other.id && (name == other.name || isWithin(other, SAME_ID_RADIUS));
}

bool MemberKey::isSameByName(const MemberKey &other) const
{
    if (name != other.name)
        return false;
    const bool haveOtherIds = !id.isEmpty() && !other.id.isEmpty() && id != other.id;
    if (position.isValid() || other.position.isValid())
        return isWithin(other, haveOtherIds ? OTHER_ID_RADIUS : SAME_NAME_RADIUS);
    return address == other.address && !haveOtherIds;
}

bool MemberKey::isWithin(const MemberKey &other, double radius) const
{
    return position.isValid() && other.position.isValid()
           && Utilities::calculateDistanceInMeter(position, other.position) <= radius;
}

} // namespace tool
