// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/AddressPrivate.h"
#include "model/LocationPrivate.h"
#include "model/ProviderData.h"
#include "places/BoundingBox.h"
#include "places/Utilities.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace vela::platform::places;

namespace
{

constexpr double NOT_SET = std::numeric_limits<double>::quiet_NaN();

Coordinates at(double latitude, double longitude, double altitude = NOT_SET)
{
    Coordinates coordinates(latitude, longitude);
    coordinates.setAltitude(altitude);
    return coordinates;
}

AddressPrivate *partsOf(Address &address)
{
    return AddressPrivate::privateFromPublic(&address);
}

} // namespace

TEST(Coordinates, IsValidUpToTheEndsOfItsRange)
{
    const struct
    {
        double latitude;
        double longitude;
        bool valid;
    } cases[] = {{0, 0, true},          {90, 180, true},         {-90, -180, true},
                 {90.000001, 0, false}, {0, -180.000001, false}, {NOT_SET, 0, false},
                 {0, NOT_SET, false},   {INFINITY, 0, false}};
    for (const auto &row : cases)
        EXPECT_EQ(Coordinates(row.latitude, row.longitude).isValid(), row.valid)
            << row.latitude << " " << row.longitude;
    EXPECT_FALSE(Coordinates().isValid());
}

TEST(Coordinates, EqualsAnotherWithinAMillionth)
{
    const struct
    {
        Coordinates a;
        Coordinates b;
        bool equal;
    } cases[] = {{Coordinates(), Coordinates(), true},        {at(45, 7), at(45.0000005, 7), true},
                 {at(45, 7), at(45.000002, 7), false},        {at(45, 7), at(45, 7.000002), false},
                 {at(45, 7, 10), at(45, 7), false},           {at(45, 7), at(45, 7, 10), false},
                 {at(45, 7, 10), at(45, 7, 10.0000005), true}};
    for (const auto &row : cases)
        EXPECT_EQ(row.a == row.b, row.equal) << row.b.latitude() << " " << row.b.altitude();
    Coordinates vague = at(45, 7);
    vague.setHorizontalAccuracy(500);
    EXPECT_EQ(vague, at(45, 7)) << "accuracy is no difference";
}

TEST(Address, ReadsAsOneLineWithoutThePartsThatAreNotThere)
{
    const struct
    {
        const char *street, *city, *region, *postalCode, *country, *expected;
    } cases[] = {
        {"Main St", "Springfield", "IL", "62701", "USA", "Main St, Springfield, IL 62701, USA"},
        {"Main St", "Springfield", "", "62701", "USA", "Main St, Springfield, 62701, USA"},
        {"", "", "IL", "62701", "", "IL 62701"},
        {" ", "Springfield", "", "", "", " , Springfield"},
        {"", "", "", "", "", ""},
    };
    for (const auto &row : cases) {
        Address address;
        address.setHouseNumber(QStringLiteral("7"));
        address.setStreet(QString::fromUtf8(row.street));
        address.setCity(QString::fromUtf8(row.city));
        address.setRegion(QString::fromUtf8(row.region));
        address.setPostalCode(QString::fromUtf8(row.postalCode));
        address.setCountry(QString::fromUtf8(row.country));
        EXPECT_EQ(partsOf(address)->concatenatedLabel(), QString::fromUtf8(row.expected));
        EXPECT_EQ(partsOf(address)->unifiedLabel(), QString::fromUtf8(row.expected));
        address.setLabel(QStringLiteral("Town hall"));
        EXPECT_EQ(partsOf(address)->unifiedLabel(), QStringLiteral("Town hall"));
    }
}

TEST(Address, IsEmptyUntilAPartOfItIsSet)
{
    Address ground;
    ground.setFloor(0);
    EXPECT_FALSE(ground.isEmpty());
    EXPECT_NE(ground, Address());
    Address lines;
    lines.setExtendedAddressLines({QStringLiteral("a")});
    EXPECT_TRUE(lines.isEmpty()) << "lines are made from the parts";
    EXPECT_NE(lines, Address());
}

TEST(Address, TellsNoFloorFromTheGroundFloorAndFromAGarbledOne)
{
    Address address;
    EXPECT_EQ(address.floor(), std::numeric_limits<int>::min());
    EXPECT_FALSE(address.hasValidFloor());
    address.setFloor(-3);
    EXPECT_EQ(address.floor(), -3);
    partsOf(address)->setField(QStringLiteral("_floor"), QStringLiteral("attic"));
    EXPECT_EQ(address.floor(), 0);
    EXPECT_TRUE(address.hasValidFloor());
    address.setFloor(std::numeric_limits<int>::min());
    EXPECT_EQ(address, Address());
}

TEST(Address, TurnsLinesIntoATextAndBack)
{
    const QStringList lines = {QStringLiteral("a"), QStringLiteral("b\nc")};
    EXPECT_EQ(AddressPrivate::addressLinesToTextBlob(lines), QStringLiteral("a\nb c"));
    EXPECT_EQ(AddressPrivate::addressLinesToTextBlob({QString(), QStringLiteral("a"), QString()}),
              QStringLiteral("a\n"));
    Address address;
    partsOf(address)->setCompactAddressLines(QStringLiteral("x\n\ny"));
    EXPECT_EQ(address.compactAddressLines(), (QStringList{QStringLiteral("x"), QString(), QStringLiteral("y")}));
}

TEST(Location, LosesItsZoomWhenCopiedAndMoved)
{
    Location original(5);
    original.setZoom(12);
    const Location copy = original;
    Location target;
    target.setZoom(5);
    target = original;
    EXPECT_EQ(copy.id(), 5);
    EXPECT_EQ(copy.zoom(), -1);
    EXPECT_EQ(target.id(), 5);
    EXPECT_EQ(target.zoom(), 5);
    EXPECT_EQ(original.zoom(), 12);

    Location other(6);
    swap(original, other);
    EXPECT_EQ(original.id(), 6);
    EXPECT_EQ(original.zoom(), 12);
    EXPECT_EQ(other.id(), 5);
    EXPECT_EQ(other.zoom(), -1);
    target = std::move(original);
    EXPECT_EQ(target.id(), 6);
    EXPECT_EQ(target.zoom(), 5);
    const Location moved = std::move(target);
    EXPECT_EQ(moved.id(), 6);
    EXPECT_EQ(moved.zoom(), -1);
}

TEST(Location, EqualsTheSameWhereaboutsUnderAnotherId)
{
    const std::vector<std::function<void(Location &)>> differences = {
        [](Location &l) { l.setCoordinates(at(1, 2)); },
        [](Location &l) { l.setVirtualData(QStringLiteral("v")); },
        [](Location &l) {
            BoundingBox box;
            box.setTopLeft(at(1, 2));
            EXPECT_NE(box, BoundingBox());
            l.setBoundingBox(box);
        },
    };
    Location other(7);
    other.setZoom(3);
    LocationPrivate::privateFromPublic(&other)->setAddressUsedToGeocode(QStringLiteral("x"));
    EXPECT_EQ(Location(), other);
    for (const auto &differ : differences) {
        Location different;
        differ(different);
        EXPECT_NE(Location(), different);
    }
}

TEST(Location, RemembersTheAddressThatWasGeocoded)
{
    Location location;
    LocationPrivate &data = *LocationPrivate::privateFromPublic(&location);
    EXPECT_FALSE(data.needGeocode());
    Address given;
    given.setStreet(QStringLiteral("1 Main St"));
    Address resolved;
    resolved.setStreet(QStringLiteral("1 Main Street"));
    location.setAddress(given);
    EXPECT_TRUE(data.needGeocode());
    data.setCoordinates(at(1, 2), resolved);
    EXPECT_FALSE(data.needGeocode());
    EXPECT_EQ(data.addressUsedToGeocode(), QStringLiteral("1 Main St"));
    EXPECT_EQ(location.address().street(), QStringLiteral("1 Main Street"));
    location.setCoordinates(at(3, 4));
    EXPECT_EQ(location.address(), resolved);
}

TEST(Provider, SharesItsDataAndIsTheSameWhateverItOffers)
{
    Provider provider;
    const Provider copy = provider;
    ProviderData::fromPublic(provider)->name = QStringLiteral("guide");
    EXPECT_EQ(copy.name(), QStringLiteral("guide")) << "copies see each other's changes";
    Provider other;
    ProviderData::fromPublic(other)->name = QStringLiteral("guide");
    ProviderData::fromPublic(other)->supportedDataTypes = QStringList{QStringLiteral("poi")};
    EXPECT_EQ(other, provider);
    EXPECT_EQ(qHash(other), qHash(provider));
    ProviderData::fromPublic(other)->url = QUrl(QStringLiteral("https://guide.example/"));
    EXPECT_NE(other, provider);
}

TEST(Utilities, MeasureGreatCircles)
{
    EXPECT_NEAR(Utilities::calculateDistanceInMeter(at(0, 0), at(0, 1)), 111195, 1);
    EXPECT_EQ(Utilities::calculateDistanceInMeter(at(46, 7), at(46, 7)), 0);
    EXPECT_NEAR(Utilities::calculateDistanceInMeter(at(0, 179.5), at(0, -179.5)), 111195, 1);
    EXPECT_NEAR(Utilities::calculateDistanceInMeter(at(12.3, 45.6), at(-12.3, -134.4)), M_PI * 6371009, 1);
    EXPECT_TRUE(std::isnan(Utilities::calculateDistanceInMeter(at(0, 0), Coordinates())));
}

TEST(Utilities, ReplaceEveryOccurrenceOnce)
{
    const struct
    {
        std::string text, from, to, expected;
    } cases[] = {
        {"aaa", "a", "aa", "aaaaaa"}, {"abab", "ab", "", ""}, {"abc", "", "x", "abc"}, {"aab", "ab", "b", "ab"}};
    for (const auto &row : cases) {
        std::string text = row.text;
        Utilities::replaceAll(text, row.from, row.to);
        EXPECT_EQ(text, row.expected);
    }
}
