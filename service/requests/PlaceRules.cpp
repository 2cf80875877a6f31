// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/PlaceRules.h"

#include "Limits.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"

#include <algorithm>
#include <ctime>

namespace placesd
{

using namespace orix_places_protocol;
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

} // namespace

quint64 now()
{
    return static_cast<quint64>(std::time(nullptr));
}

ReturnCode accept(const PlacePrivate &place)
{
    constexpr int KEPT = PlacePrivate::InRecentBucket | PlacePrivate::ExplicitlySaved;
    const auto &records = place.auxiliaryData();
    const auto isLong = [](const QString &text) { return text.size() > limits::TEXT_LENGTH; };
    const auto isEmpty = [](const QString &text) { return text.isEmpty(); };
    const bool tooLong = isLong(place.name()) || isLong(place.searchTerm())
                         || std::any_of(place.tags().begin(), place.tags().end(), isLong)
                         || place.locations().size() > limits::LIST_LENGTH || records.size() > limits::LIST_LENGTH
                         || place.tags().size() > limits::LIST_LENGTH || place.aliases().size() > limits::LIST_LENGTH
                         || std::any_of(records.begin(), records.end(), [](const AuxiliaryData &record) {
                                return record.properties().size() > limits::LIST_LENGTH;
                            });
    if (tooLong)
        return ReturnCode::LimitExceeded;
    if (place.locations().isEmpty() || (place.persistenceMask() & KEPT) == 0 || place.usageCount() < 0
        || std::any_of(place.tags().begin(), place.tags().end(), isEmpty))
        return ReturnCode::PlaceNotAcceptable;
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
