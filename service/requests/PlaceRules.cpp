// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/PlaceRules.h"

#include "Limits.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "places/Provider.h"

#include <algorithm>
#include <ctime>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::Address;
using vela::platform::places::AuxiliaryData;
using vela::platform::places::Location;
using vela::platform::places::LocationPrivate;
using vela::platform::places::PlacePrivate;

namespace
{

template <typename List, typename Condition>
void removeIf(List &list, Condition condition)
{
    list.erase(std::remove_if(list.begin(), list.end(), condition), list.end());
}

bool isBounded(const QString &text);
bool isBounded(const Location &location);
bool isBounded(const AuxiliaryData &record);

template <typename List>
bool areBounded(const List &list)
{
    return list.size() <= limits::LIST_LENGTH
           && std::all_of(list.begin(), list.end(), [](const auto &part) { return isBounded(part); });
}

bool isBounded(const QString &text)
{
    return text.size() <= limits::TEXT_LENGTH;
}

bool isLongTextBounded(const QString &text)
{
    return text.size() <= limits::LONG_TEXT_LENGTH;
}

bool isBounded(const Location &location)
{
    const Address address = location.address();
    const QStringList texts = {address.label(),       address.houseNumber(), address.street(),
                               address.city(),        address.region(),      address.country(),
                               address.countryCode(), address.postalCode(),  address.isoAlpha2CountryCode(),
                               address.campus(),      address.building(),    address.room()};
    return areBounded(texts) && areBounded(address.compactAddressLines()) && areBounded(address.extendedAddressLines())
           && isLongTextBounded(location.virtualData());
}

bool isBounded(const AuxiliaryData &record)
{
    const QMap<QString, QString> properties = record.properties();
    return isBounded(record.type()) && isBounded(record.externalId()) && isBounded(record.provider().name())
           && areBounded(properties.keys()) && std::all_of(properties.begin(), properties.end(), isLongTextBounded);
}

/// Whether all texts and lists of a place are within the limits.
bool isBounded(const PlacePrivate &place)
{
    return isBounded(place.name()) && isBounded(place.owner()) && isBounded(place.source())
           && isBounded(place.searchTerm()) && isLongTextBounded(place.description()) && areBounded(place.tags())
           && areBounded(place.aliases()) && areBounded(place.locations()) && areBounded(place.auxiliaryData());
}

} // namespace

quint64 now()
{
    return static_cast<quint64>(std::time(nullptr));
}

Status accept(const PlacePrivate &place)
{
    constexpr int KEPT = PlacePrivate::InRecentBucket | PlacePrivate::ExplicitlySaved;
    const auto isEmpty = [](const QString &text) { return text.isEmpty(); };
    if (!isBounded(place)) {
        return {ReturnCode::LimitExceeded, "a text of the place has more than " + std::to_string(limits::TEXT_LENGTH)
                                               + " UTF-16 units (descriptions and values of properties: "
                                               + std::to_string(limits::LONG_TEXT_LENGTH)
                                               + "), or one of its lists more than "
                                               + std::to_string(limits::LIST_LENGTH) + " members"};
    }
    const struct
    {
        bool holds;
        const char *reason;
    } faults[] = {
        {place.locations().isEmpty(), "the place has no location; give it a position or an address"},
        {(place.persistenceMask() & KEPT) == 0, "the place is neither saved nor in the recent bucket"},
        {place.usageCount() < 0, "the place has a negative usage count"},
        {std::any_of(place.tags().begin(), place.tags().end(), isEmpty), "the place has an empty tag; leave it out"},
    };
    for (const auto &fault : faults) {
        if (fault.holds)
            return {ReturnCode::PlaceNotAcceptable, fault.reason};
    }
    return ReturnCode::Success;
}

Status acceptFromGuest(PlacePrivate &place)
{
    if (!place.isExplicitlySaved() || place.isPrivate())
        return {ReturnCode::PlaceNotAcceptable, "the open channel only takes places that are saved and not private"};
    place.setPersistenceMask(PlacePrivate::ExplicitlySaved);
    place.setUsageCount(0);
    place.setLastUsedTime(0);
    return ReturnCode::Success;
}

void dropUnstoredParts(PlacePrivate &place)
{
    removeIf(place.m_auxiliaryData, [](const AuxiliaryData &record) { return !record.isPersistable(); });
    removeIf(place.m_locations,
             [](const Location &location) { return LocationPrivate::privateFromPublic(&location)->isUnset(); });
}

Status permit(Perimeter named, vela::system::SecurityPerimeter::Type own)
{
    if (named == Perimeter::Default || named == fromSystemPerimeter(own))
        return ReturnCode::Success;
    return {ReturnCode::NotPermitted, "the request names another perimeter than that of the place"};
}

} // namespace placesd
