// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlaceId.h"

#include "model/PlacePrivate.h"
#include "places/Tags.h"

namespace vela::platform::places
{

PlaceId::PlaceId(const AbstractPlacePrivate &place)
    : persistedId(place.id())
    , name(place.name())
    , location(place.primaryLocation())
    , phoneNumber(place.primaryPhoneNumber())
    , coordinates(place.primaryCoordinates())
{
    const auto *full = dynamic_cast<const PlacePrivate *>(&place);
    if (!full)
        return;
    for (const AuxiliaryData &data : full->auxiliaryData()) {
        auxiliaryDataTypes.append(data.type());
        if (!data.externalId().isEmpty() && data.provider().isValid())
            externalIds.insert(data.provider(), data.externalId());
    }
    restaurant = full->hasTag(QLatin1String(Tags::Restaurant));
}

PlaceId &PlaceId::operator=(const PlaceId &other)
{
    persistedId = other.persistedId;
    externalIds = other.externalIds;
    auxiliaryDataTypes = other.auxiliaryDataTypes;
    name = other.name;
    location = other.location;
    phoneNumber = other.phoneNumber;
    coordinates = other.coordinates;
    complete = other.complete;
    restaurant = other.restaurant;
    return *this;
}

bool PlaceId::isCompositeId() const
{
    return !name.isEmpty() || !location.isEmpty() || !phoneNumber.isEmpty() || coordinates.isValid();
}

} // namespace vela::platform::places
