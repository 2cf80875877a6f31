// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/PlaceRules.h"

#include "Limits.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <functional>

using namespace placesd;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;

namespace
{

void addMany(QStringList &list, int count)
{
    for (int i = 0; i < count; ++i)
        list.append(QStringLiteral("text %1").arg(i));
}

void setAddress(PlacePrivate &place, const std::function<void(Address &)> &set)
{
    Address address;
    set(address);
    place.m_locations[0].setAddress(address);
}

} // namespace

TEST(PlaceRules, EachTextAndListHasALimit)
{
    using Set = std::function<void(PlacePrivate &, const QString &)>;
    const auto inAddress = [](void (Address::*set)(const QString &)) {
        return [set](PlacePrivate &place, const QString &text) {
            setAddress(place, [&](Address &address) { (address.*set)(text); });
        };
    };
    const auto inRecord = [](const std::function<void(AuxiliaryData &, const QString &)> &set) {
        return [set](PlacePrivate &place, const QString &text) { set(place.m_auxiliaryData[0], text); };
    };
    const struct
    {
        const char *name;
        Set set;
        int most = limits::TEXT_LENGTH;
    } texts[] = {
        {"name", &PlacePrivate::setName},
        {"owner", &PlacePrivate::setOwner},
        {"source", &PlacePrivate::setSource},
        {"term", &PlacePrivate::setSearchTerm},
        {"description", &PlacePrivate::setDescription, limits::LONG_TEXT_LENGTH},
        {"tag", [](PlacePrivate &place, const QString &text) { place.m_tags.append(text); }},
        {"alias", [](PlacePrivate &place, const QString &text) { place.m_aliases.append(text); }},
        {"label", inAddress(&Address::setLabel)},
        {"house number", inAddress(&Address::setHouseNumber)},
        {"street", inAddress(&Address::setStreet)},
        {"city", inAddress(&Address::setCity)},
        {"region", inAddress(&Address::setRegion)},
        {"country", inAddress(&Address::setCountry)},
        {"country code", inAddress(&Address::setCountryCode)},
        {"postal code", inAddress(&Address::setPostalCode)},
        {"two letters", inAddress(&Address::setIsoAlpha2CountryCode)},
        {"campus", inAddress(&Address::setCampus)},
        {"building", inAddress(&Address::setBuilding)},
        {"room", inAddress(&Address::setRoom)},
        {"compact line",
         [](PlacePrivate &place, const QString &text) {
             setAddress(place, [&](Address &address) { address.setCompactAddressLines({text}); });
         }},
        {"extended line",
         [](PlacePrivate &place, const QString &text) {
             setAddress(place, [&](Address &address) { address.setExtendedAddressLines({text}); });
         }},
        {"virtual data", [](PlacePrivate &place, const QString &text) { place.m_locations[0].setVirtualData(text); },
         limits::LONG_TEXT_LENGTH},
        {"external id", inRecord([](AuxiliaryData &record, const QString &text) { record.setExternalId(text); })},
        {"key", inRecord([](AuxiliaryData &record, const QString &text) { record.addProperty(text, {}); })},
        {"value",
         inRecord([](AuxiliaryData &record, const QString &text) { record.addProperty(QStringLiteral("k"), text); }),
         limits::LONG_TEXT_LENGTH},
        {"type", inRecord([](AuxiliaryData &record, const QString &text) { record = AuxiliaryData(text); })},
        {"provider", inRecord([](AuxiliaryData &record, const QString &text) {
             AuxiliaryDataPrivate::fromPublic(record)->setProvider(sample::provider(text));
         })},
    };
    for (const auto &row : texts) {
        for (const int more : {0, 1}) {
            sample::FullPlace place;
            PlacePrivate &data = place.data();
            row.set(data, QString(row.most + more, QLatin1Char('x')));
            EXPECT_EQ(accept(data), Status(more > 0 ? ReturnCode::LimitExceeded : ReturnCode::Success)) << row.name;
        }
    }
    const std::function<void(PlacePrivate &, int)> lists[] = {
        [](PlacePrivate &place, int count) { addMany(place.m_tags, count - static_cast<int>(place.m_tags.size())); },
        [](PlacePrivate &place, int count) {
            addMany(place.m_aliases, count - static_cast<int>(place.m_aliases.size()));
        },
        [](PlacePrivate &place, int count) {
            while (place.m_locations.size() < count)
                place.m_locations.append(Location());
        },
        [](PlacePrivate &place, int count) {
            while (place.m_auxiliaryData.size() < count)
                place.m_auxiliaryData.append(AuxiliaryData());
        },
        [](PlacePrivate &place, int count) {
            QStringList keys;
            addMany(keys, count - static_cast<int>(place.m_auxiliaryData[0].properties().size()));
            for (const QString &key : std::as_const(keys))
                place.m_auxiliaryData[0].addProperty(key, {});
        },
    };
    for (const auto &fill : lists) {
        for (const int more : {0, 1}) {
            sample::FullPlace place;
            PlacePrivate &data = place.data();
            fill(data, limits::LIST_LENGTH + more);
            EXPECT_EQ(accept(data), Status(more > 0 ? ReturnCode::LimitExceeded : ReturnCode::Success))
                << &fill - std::begin(lists);
        }
    }
}

TEST(PlaceRules, DecideWhichPlacesAreAccepted)
{
    constexpr int PICKED = PlacePrivate::InRecentBucket;
    constexpr int SAVED = PlacePrivate::ExplicitlySaved;
    const struct
    {
        std::function<void(PlacePrivate &)> shape;
        bool isAccepted;
        bool isAcceptedFromGuest;
    } cases[] = {
        {[](PlacePrivate &) {}, true, true},
        {[](PlacePrivate &place) { place.m_locations.clear(); }, false, false},
        {[](PlacePrivate &place) { place.m_locations = {Location()}; }, false, false},
        {[](PlacePrivate &place) { place.m_locations.append(Location()); }, true, true},
        {[](PlacePrivate &place) { place.setPersistenceMask(PICKED); }, true, false},
        {[](PlacePrivate &place) { place.setPersistenceMask(4); }, false, false},
        {[](PlacePrivate &place) { place.setPrivate(true); }, true, false},
        {[](PlacePrivate &place) { place.setUsageCount(-1); }, false, false},
        {[](PlacePrivate &place) { place.setUsageCount(0); }, true, true},
        {[](PlacePrivate &place) { place.m_tags.append(QString()); }, false, false},
    };
    for (const auto &row : cases) {
        sample::FullPlace place;
        PlacePrivate &data = place.data();
        data.setPrivate(false);
        row.shape(data);
        AuxiliaryData transient(QStringLiteral("x"));
        AuxiliaryDataPrivate::fromPublic(transient)->setPersistable(false);
        data.addAuxiliaryData(transient);
        dropUnstoredParts(data);
        EXPECT_LE(data.m_locations.size(), 1);
        EXPECT_EQ(data.m_auxiliaryData.size(), 1);
        const auto number = &row - std::begin(cases);
        EXPECT_EQ(accept(data) == ReturnCode::Success, row.isAccepted) << number;
        if (!row.isAccepted)
            continue;
        const int before = data.persistenceMask();
        EXPECT_EQ(acceptFromGuest(data) == ReturnCode::Success, row.isAcceptedFromGuest) << number;
        EXPECT_EQ(data.persistenceMask(), row.isAcceptedFromGuest ? SAVED : before);
        EXPECT_EQ(data.usageCount() == 0 && data.lastUsedTime() == 0, row.isAcceptedFromGuest) << number;
    }
}
