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

ReturnCode accept(const PlacePrivate &place)
{
    constexpr int KEPT = PlacePrivate::InRecentBucket | PlacePrivate::ExplicitlySaved;
    const auto isEmpty = [](const QString &text) { return text.isEmpty(); };
    if (!isBounded(place))
        return ReturnCode::LimitExceeded;
    if (place.locations().isEmpty() || (place.persistenceMask() & KEPT) == 0 || place.usageCount() < 0
        || std::any_of(place.tags().begin(), place.tags().end(), isEmpty))
        return ReturnCode::PlaceNotAcceptable;
    return ReturnCode::Success;
}

ReturnCode acceptFromGuest(PlacePrivate &place)
{
    if (!place.isExplicitlySaved() || place.isPrivate())
        return ReturnCode::PlaceNotAcceptable;
    place.setPersistenceMask(PlacePrivate::ExplicitlySaved);
    place.setUsageCount(0);
    place.setLastUsedTime(0);
    return ReturnCode::Success;
}

void dropWhatIsNotStored(PlacePrivate &place)
{
    removeIf(place.m_auxiliaryData, [](const AuxiliaryData &record) { return !record.isPersistable(); });
    removeIf(place.m_locations,
             [](const Location &location) { return LocationPrivate::privateFromPublic(&location)->saysNothing(); });
}

ReturnCode permit(Perimeter named, vela::system::SecurityPerimeter::Type own)
{
    const bool permitted = named == Perimeter::Default || named == fromSystemPerimeter(own);
    return permitted ? ReturnCode::Success : ReturnCode::NotPermitted;
}

} // namespace placesd
