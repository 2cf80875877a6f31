// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "places/PlaceHeader.h"
#include "places/Tags.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QUrlQuery>

using namespace vela::platform::places;
using testing::ElementsAre;

namespace
{

PlacePrivate &dataOf(Place &place)
{
    return *PlacePrivate::privateFromPublic(&place);
}

AuxiliaryData record(const QString &type, const char *key, const char *value, bool persistable = true)
{
    AuxiliaryData data(type);
    data.addProperty(QLatin1String(key), QString::fromUtf8(value));
    AuxiliaryDataPrivate::fromPublic(data)->setPersistable(persistable);
    return data;
}

PlaceHeader &withMask(PlaceHeader &header, qint64 mask)
{
    PlaceHeaderPrivate::privateFromPublic(&header)->m_dataMask = mask;
    return header;
}

} // namespace

TEST(Place, BringsAnAliasWithTheTagsOfOnesOwnHomeAndWork)
{
    Place place;
    EXPECT_TRUE(place.addTag(Tags::MyHome));
    EXPECT_FALSE(place.addTag(Tags::MyHome));
    EXPECT_TRUE(place.addTag(Tags::MyWork));
    EXPECT_TRUE(place.addTag(QStringLiteral("LBS-MY-HOME")));
    EXPECT_THAT(place.aliases(), ElementsAre(QStringLiteral("Home"), QStringLiteral("Work")));
    EXPECT_TRUE(place.removeTag(Tags::MyHome));
    EXPECT_FALSE(place.removeTag(Tags::MyHome));
    EXPECT_THAT(place.aliases(), ElementsAre(QStringLiteral("Work")));
    EXPECT_EQ(place.tagCount(), 2);
}

TEST(Place, RemovesByIndexWithoutEverComplaining)
{
    Place place;
    place.addLocation(Location());
    for (const int index : {-1, 1, 5})
        EXPECT_TRUE(place.removeLocation(index));
    EXPECT_EQ(place.locationCount(), 1);
    EXPECT_TRUE(place.removeLocation(0));
    EXPECT_EQ(place.locationCount(), 0);
    EXPECT_TRUE(place.removeAuxiliaryData(0));
    EXPECT_FALSE(place.removeAuxiliaryData(AuxiliaryData()));
}

TEST(Place, EqualsOneThatDiffersOnlyInWhatIsNotCompared)
{
    sample::FullPlace a;
    const std::vector<std::pair<bool, std::function<void(PlacePrivate &)>>> changes = {
        {true, [](PlacePrivate &p) { p.setId(7); }},
        {true, [](PlacePrivate &p) { p.setLastUsedTime(9); }},
        {true,
         [](PlacePrivate &p) {
             p.m_tags = QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("a")};
         }},
        {false,
         [](PlacePrivate &p) {
             p.m_tags = QStringList{QStringLiteral("a"), QStringLiteral("b")};
         }},
        {false, [](PlacePrivate &p) { p.setName(QStringLiteral("x")); }},
        {false, [](PlacePrivate &p) { p.setExpiredTime(9); }},
        {false, [](PlacePrivate &p) { p.m_locations.clear(); }},
        {false, [](PlacePrivate &p) { p.m_auxiliaryData.clear(); }},
    };
    a.data().m_tags = QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("b")};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Place b;
        dataOf(b) = a.data();
        changes[i].second(dataOf(b));
        EXPECT_EQ(a.data() == dataOf(b), changes[i].first) << i;
    }
    PlaceHeader header;
    EXPECT_TRUE(a.data() != *PlaceHeaderPrivate::privateFromPublic(&header));
}

TEST(Place, NeverChangesItsPerimeterOnceStored)
{
    Place place;
    EXPECT_TRUE(dataOf(place).setSecurityPerimeter(vela::system::SecurityPerimeter::Work));
    dataOf(place).setId(42);
    EXPECT_FALSE(dataOf(place).setSecurityPerimeter(vela::system::SecurityPerimeter::Personal));
    EXPECT_EQ(place.securityPerimeter(), vela::system::SecurityPerimeter::Work);
}

TEST(Place, AnswersFromTheFirstLocationThatCan)
{
    Address roomOnly;
    roomOnly.setRoom(QStringLiteral("2b"));
    Location bridge;
    bridge.setVirtualData(QStringLiteral("bridge"));
    Location phone;
    phone.setVirtualData(QStringLiteral("phone"));
    Location room;
    room.setAddress(roomOnly);
    Location point;
    point.setCoordinates(Coordinates(1, 2));

    Place place;
    place.addLocation(bridge);
    EXPECT_EQ(place.primaryLocation(), QStringLiteral("bridge"));
    EXPECT_FALSE(place.hasPhysicalLocation());
    place.addLocation(phone);
    EXPECT_EQ(place.primaryLocation(), QStringLiteral("phone"));
    place.addLocation(point);
    EXPECT_TRUE(place.hasPhysicalLocation());
    EXPECT_EQ(place.primaryCoordinates(), Coordinates(1, 2));
    place.addLocation(room);
    EXPECT_EQ(place.primaryLocation(), QString()) << "an address of which no line can be made";
    EXPECT_EQ(place.primaryAddress(), roomOnly);
}

TEST(Place, TakesItsPrimaryValuesFromTheContactOrElseTheFirstRecordThatHasOne)
{
    Place place;
    place.addAuxiliaryData(record(QStringLiteral("other"), "phoneNumber", "0"));
    place.addAuxiliaryData(record(AuxiliaryData::TypePointOfInterest, "phoneNumber", "1", false));
    place.addAuxiliaryData(record(AuxiliaryData::TypePointOfInterest, "phoneNumber", "2"));
    EXPECT_EQ(place.primaryPhoneNumber(), QStringLiteral("1"));
    AuxiliaryData contact = record(AuxiliaryData::TypeContact, "workPhone", "3");
    contact.addProperty(QStringLiteral("homePhone"), QStringLiteral("4"));
    place.addAuxiliaryData(contact);
    EXPECT_EQ(place.primaryPhoneNumber(), QStringLiteral("4"));
    EXPECT_EQ(place.primaryEmailAddress(), QString());
    place.addAuxiliaryData(record(AuxiliaryData::TypePointOfInterest, "url", "https://a.example/"));
    EXPECT_EQ(place.primaryUrl(), QUrl(QStringLiteral("https://a.example/")));
}

TEST(PlaceHeader, KnowsWhatItsMaskTells)
{
    const struct
    {
        qint64 mask;
        int favorite, home, unlisted;
    } cases[] = {{0x1800, 1, 2, 0}, {0x8800, 2, 1, 0}, {0x800, 2, 2, 0}, {0x1000, 2, 2, 2}, {0, 2, 2, 2}};
    for (const auto &row : cases) {
        PlaceHeader header;
        withMask(header, row.mask);
        EXPECT_EQ(header.hasTag(Tags::Favorite), row.favorite) << row.mask;
        EXPECT_EQ(header.hasTag(Tags::Home), row.home) << row.mask;
        EXPECT_EQ(header.hasTag(QStringLiteral("my-own-tag")), row.unlisted) << row.mask;
        EXPECT_EQ(header.isFavorite(), row.favorite == 1) << row.mask;
    }
    PlaceHeader header;
    withMask(header, 0x20 | 0x80);
    EXPECT_EQ(header.hasAuxiliaryData(AuxiliaryData::TypeContact), PlaceHeader::Present);
    EXPECT_EQ(header.hasAuxiliaryData(AuxiliaryData::TypeCalendar), PlaceHeader::Absent);
    EXPECT_EQ(header.hasAuxiliaryData(QLatin1String(AuxiliaryData::TypeImage)), PlaceHeader::Unknown);
}

TEST(PlaceHeader, HasABitForEveryTagOfThePlatform)
{
    qint64 bit = 0x800;
    for (const char *tag :
         {"lbs-favorite", "lbs-my-home", "lbs-my-work", "lbs-home", "lbs-work", "lbs-airport", "lbs-automotive",
          "lbs-bank", "lbs-entertainment", "lbs-health-care", "lbs-lodging", "lbs-personal-services",
          "lbs-public-offices", "lbs-restaurant", "lbs-shopping", "lbs-travel"}) {
        bit *= 2;
        Place place;
        place.addTag(QLatin1String(tag));
        PlaceHeader header;
        PlaceHeaderPrivate::privateFromPublic(&header)->setData(dataOf(place));
        EXPECT_EQ(PlaceHeaderPrivate::privateFromPublic(&header)->dataMask(), bit | 0x800) << tag;
        EXPECT_EQ(header.hasTag(QLatin1String(tag)), PlaceHeader::Present);
    }
}

TEST(PlaceId, TakesTheIdOfAProvidersLaterRecord)
{
    sample::FullPlace place;
    AuxiliaryData second = place.auxiliaryData(0);
    second.setExternalId(QStringLiteral("x:2"));
    place.addAuxiliaryData(second);
    place.addAuxiliaryData(record(QStringLiteral("no-provider"), "k", "v"));
    const std::unique_ptr<PlaceId> id = place.data().globalId();
    EXPECT_EQ(id->externalIds.size(), 1);
    EXPECT_EQ(id->externalIds.value(sample::provider()), QStringLiteral("x:2"));
    EXPECT_EQ(id->auxiliaryDataTypes.size(), 3);
}

TEST(MapLink, ShowsWhatThePlaceHas)
{
    Place place;
    Address address;
    address.setCity(QStringLiteral("Montréal & co"));
    Location nowhere;
    nowhere.setAddress(address);
    place.addLocation(nowhere);
    EXPECT_TRUE(place.mapUrl().isEmpty()) << "an address alone is no position";
    Location location = nowhere;
    location.setCoordinates(Coordinates(45.5, -73.5));
    place.addLocation(location);
    EXPECT_EQ(place.mapUrl().toEncoded(),
              QByteArray("https://maps.example/?lat=45.5000000&lon=-73.5000000&addrLabel=Montr%C3%A9al%20%26%20co"
                         "&city=Montr%C3%A9al%20%26%20co&label=Montr%C3%A9al%20%26%20co"
                         "&scr_cnt=45.5000000%2C-73.5000000&scr_z=6&z=6"));

    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setData(dataOf(place));
    EXPECT_EQ(header.mapUrl().toEncoded(),
              QByteArray("https://maps.example/?lat=45.5000000&lon=-73.5000000&scr_cnt=45.5000000%2C-73.5000000"
                         "&scr_z=4&z=4"));
}

TEST(MapLink, ChoosesTheScaleByHowMuchOfTheAddressIsKnown)
{
    using Set = void (Address::*)(const QString &);
    const std::vector<std::pair<Set, int>> cases = {{&Address::setRoom, 4},
                                                    {&Address::setCountry, 15},
                                                    {&Address::setRegion, 12},
                                                    {&Address::setCity, 6},
                                                    {&Address::setStreet, 4}};
    Address address;
    for (const auto &[set, scale] : cases) {
        (address.*set)(QStringLiteral("x"));
        Location location;
        location.setAddress(address);
        location.setCoordinates(Coordinates(1, 2));
        Place place;
        place.addLocation(location);
        EXPECT_EQ(QUrlQuery(place.mapUrl()).queryItemValue(QStringLiteral("z")), QString::number(scale));
    }
}

TEST(MapLink, BecomesAPlaceAgain)
{
    sample::FullPlace place;
    place.setName(QStringLiteral("A&B + 100% \"#\" \xF0\x9F\x98\x80 \n עברית"));
    Place again;
    PlacePrivate::decodePlaceFromMapUrl(place.mapUrl(), again);
    EXPECT_EQ(again.name(), place.name());
    EXPECT_EQ(again.description(), place.description());
    EXPECT_EQ(again.primaryAddress().label(), QStringLiteral("Café au lac"));
    EXPECT_EQ(again.primaryAddress().street(), QStringLiteral("Quai 1"));
    EXPECT_EQ(again.primaryCoordinates(), Coordinates(46.2, 6.15));
    EXPECT_EQ(again.primaryPhoneNumber(), QStringLiteral("+41 22"));
    EXPECT_EQ(again.primaryEmailAddress(), QStringLiteral("a@b.example"));
}

TEST(MapLink, MayBeAnybodys)
{
    Place place;
    PlacePrivate::decodePlaceFromMapUrl(
        QUrl(QStringLiteral("https://x.example/?lat=91&lon=abc&label=a+b%2Bc&addrLabel=a%20b%2Bc&city=%FF%00")), place);
    EXPECT_FALSE(place.hasCoordinates());
    EXPECT_TRUE(place.name().isEmpty()) << "a label that is the address's is no name";
    EXPECT_EQ(place.primaryAddress().label(), QStringLiteral("a b+c"));
    EXPECT_EQ(place.locationCount(), 1);
    EXPECT_EQ(place.auxiliaryDataCount(), 1);
}
