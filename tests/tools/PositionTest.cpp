// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/Position.h"
#include "PlaceLink.h"

#include <places/Place.h>

#include <gmock/gmock.h>

#include <QtCore/QtNumeric>

// Positions in the forms that people write, plus codes, and links of map web sites.

namespace
{

using namespace vela::platform::places;
using testing::HasSubstr;

/// The expected position of a text or, without one, a part of the problem; "" for a text in an unknown form.
struct Case
{
    const char *text;
    double latitude = qQNaN();
    double longitude = qQNaN();
    const char *problem = "";
};

void check(const Case &row, double tolerance = 1e-9)
{
    SCOPED_TRACE(row.text);
    const formats::ReadPosition read = tool::readAnyPosition(QString::fromUtf8(row.text));
    if (qIsNaN(row.latitude)) {
        EXPECT_FALSE(read.position.isValid());
        EXPECT_THAT(read.problem.toStdString(), HasSubstr(row.problem));
        EXPECT_EQ(read.problem.isEmpty(), row.problem[0] == '\0') << read.problem.toStdString();
        return;
    }
    EXPECT_EQ(read.problem.toStdString(), "");
    EXPECT_NEAR(read.position.latitude(), row.latitude, tolerance);
    EXPECT_NEAR(read.position.longitude(), row.longitude, tolerance);
}

Case none(const char *text, const char *problem = "")
{
    return {text, qQNaN(), qQNaN(), problem};
}

} // namespace

TEST(PositionTest, PositionsAreReadAsPeopleWriteThem)
{
    constexpr double LAT = 47 + 14.0 / 60;
    constexpr double LON = 8 + 43.0 / 60;
    const Case cases[] = {
        {"47.24,8.72", 47.24, 8.72},
        {" 47.24 , 8.72 ", 47.24, 8.72},
        {"47,24", 47, 24},
        {"47.24 8.72", 47.24, 8.72},
        {"-46.9 7.4", -46.9, 7.4},
        {"+46.9,-7.4", 46.9, -7.4},
        {"\u221246.9, \u22127.4", -46.9, -7.4},
        {"47.24N 8.72E", 47.24, 8.72},
        {"47.24\u00b0 S, 8.72\u00b0 W", -47.24, -8.72},
        {"8.72e 47.24n", 47.24, 8.72},
        {"47.24 N, 8.72", 47.24, 8.72},
        {"47\u00b014'N 8\u00b043'E", LAT, LON},
        {"47\u00b014' -8\u00b043'", LAT, -LON},
        {"47\u00b014\u203224.5\u2033N, 8\u00b043\u203212\u2033E", LAT + 24.5 / 3600, LON + 12.0 / 3600},
        {"47\u00b014'24.5''N8\u00b043'12''W", LAT + 24.5 / 3600, -LON - 12.0 / 3600},
        {"47\u00b014'24,5\"N 8\u00b043'12,0\"E", LAT + 24.5 / 3600, LON + 12.0 / 3600},
        {"N 47 14.4 E 8 43.2", 47.24, 8.72},
        {"47 14 24 N; 8 43 12 E", 47.24, 8.72},
        {"47,24; 8,72", 47.24, 8.72},
        {"47,24 8,72", 47.24, 8.72},
        {"47,24, -8,72", 47.24, -8.72},
        {"N47,24 W8,72", 47.24, -8.72},
        {"geo:47.24,8.72;u=5", 47.24, 8.72},
        none("47,24,8,72"),
        none("47 14 8 43"),
        none("N 47 14"),
        none("47.24,,8.72"),
        none("47.24"),
        none("1e1,2"),
        none("47'14 8'43"),
        none("Lake 7, Elm 9"),
        none("", ""),
        none("95.2,8", "latitude 95.2 is beyond 90"),
        none("47.24,181", "longitude 181 is beyond 180"),
        none("47 60 N 8 43 E", "60 minutes are beyond 59"),
        none("47.5 14 N 8 43 E", "degrees must be a whole number when minutes follow"),
        none("-47 N 8 E", "a sign and a letter"),
        none("47 N 8 S", "letters of one axis"),
    };
    for (const Case &row : cases)
        check(row);
    check(none(QByteArray(100000, '1').constData()));
}

TEST(PositionTest, PlusCodesFollowTheirSpecification)
{
    // Centres of the areas in the published test data.
    const Case cases[] = {
        {"7FG49Q00+", 20.375, 2.775},
        {"7FG49QCJ+2V", 20.3700625, 2.7821875},
        {"7FG49QCJ+2VX", 20.3701125, 2.782234375},
        {"7FG49QCJ+2VXGJ", 20.3701135, 2.78223535156},
        {"8FVC2222+22", 47.0000625, 8.0000625},
        {"4VCPPQGP+Q9", -41.2730625, 174.7859375},
        {"62G20000+", 0.5, -179.5},
        {"22220000+", -89.5, -179.5},
        {"7fg40000+", 20.5, 2.5},
        {"22222222+22", -89.9999375, -179.9999375},
        {"6VGX0000+", 0.5, 179.5},
        {"CFX30000+", 89.5, 1.5},
        none("9G8F+6X", "a short plus code"),
        none("9G8F+6X Z\u00fcrich", "a short plus code"),
        none("7FG40000+2V", "zeros"),
        none("X2220000+", "beyond the Earth"),
        none("7FG49QCJ+2"),
        none("7FG49QIJ+2V"),
        none("7FG4900J+"),
        none("C+"),
    };
    for (const Case &row : cases)
        check(row, 1e-8);
    EXPECT_NEAR(tool::readAnyPosition(QStringLiteral("8FVC9G8F+6X")).position.horizontalAccuracy(), 8.4, 0.2);
}

TEST(PositionTest, LinksOfMapSitesAreReadWithoutANetwork)
{
    const struct
    {
        Case link;
        const char *name = "";  ///< Of the place.
        const char *label = ""; ///< Its address.
    } cases[] = {
        {{"https://www.openstreetmap.org/?mlat=47.24&mlon=8.72#map=16/47.1/8.1", 47.24, 8.72}},
        {{"https://www.openstreetmap.org/node/1#map=16/-47.24/8.72&layers=N", -47.24, 8.72}},
        {{"https://www.openstreetmap.org/search?query=Bahnhofstrasse%201", qQNaN(), qQNaN(), "no position"},
         "",
         "Bahnhofstrasse 1"},
        {{"https://osm.org/go/0CMnA--", qQNaN(), qQNaN(), "only its site can resolve"}},
        {{"https://www.google.com/maps/@47.24,8.72,15z", 47.24, 8.72}},
        {{"https://www.google.ch/maps/place/Alter+See/@47.1,8.1,17z/data=!3m1!4b1!4m6!3m5!8m2!3d47.24!4d8.72!16s",
          47.24, 8.72},
         "Alter See"},
        {{"https://www.google.co.uk/maps/place/47%C2%B014'24.0%22N+8%C2%B043'12.0%22E/@47.1,8.1,17z", 47.24, 8.72}},
        {{"https://maps.google.com/?q=47.24,8.72(Hut)&ll=1,2", 47.24, 8.72}, "Hut"},
        {{"https://maps.google.com/maps?q=Lake+%26+hut&ll=47.24,8.72", 47.24, 8.72}, "Lake & hut"},
        {{"https://www.google.com/maps/search/?api=1&query=47.24%2C8.72", 47.24, 8.72}},
        {{"https://www.google.com/maps/search/?api=1&query=8FVC6PR9%2B22", 47.2400625, 8.7175625}},
        {{"https://maps.google.com/?q=loc:47.24,8.72", 47.24, 8.72}},
        {{"https://maps.app.goo.gl/abc", qQNaN(), qQNaN(), "only its site can resolve"}},
        {{"https://goo.gl/maps/abc", qQNaN(), qQNaN(), "only its site can resolve"}},
        {{"https://maps.apple.com/?ll=47.24,8.72&q=Hut", 47.24, 8.72}, "Hut"},
        {{"https://maps.apple.com/?address=Seestrasse%201,%20Bern&ll=47.24,8.72", 47.24, 8.72}, "Seestrasse 1, Bern"},
        {{"https://maps.apple.com/place?coordinate=47.24,8.72&name=Hut", 47.24, 8.72}, "Hut"},
        {{"https://maps.apple.com/?daddr=47.24,8.72", 47.24, 8.72}},
        {{"https://www.bing.com/maps?cp=47.24~8.72&lvl=15", 47.24, 8.72}},
        {{"https://bing.com/maps/default.aspx?sp=point.47.24_8.72_Hut&cp=1~2", 47.24, 8.72}, "Hut"},
        {{"https://share.here.com/l/47.24,8.72,Hut?z=15", 47.24, 8.72}, "Hut"},
        {{"https://wego.here.com/?map=47.24,8.72,15,normal", 47.24, 8.72}},
        {{"https://waze.com/ul?ll=47.24%2C8.72&navigate=yes", 47.24, 8.72}},
        {{"https://www.waze.com/live-map/directions?to=ll.47.24%2C8.72", 47.24, 8.72}},
        {{"https://yandex.ru/maps/?ll=8.1,47.1&pt=8.72,47.24&z=12", 47.24, 8.72}},
        {{"https://yandex.com/maps/213/moscow/?ll=8.72%2C47.24", 47.24, 8.72}},
        {{"https://yandex.com/maps/-/CCUabc", qQNaN(), qQNaN(), "only its site can resolve"}},
        {{"https://en.mapy.cz/turisticka?x=8.72&y=47.24&z=11", 47.24, 8.72}},
        {{"https://geohack.toolforge.org/geohack.php?pagename=Old_hut&params=47_14_24_N_8_43_12_W_type:city", 47.24,
          -8.72},
         "Old hut"},
        {{"https://osmand.net/map?pin=47.24,8.72#15/1/2", 47.24, 8.72}},
        {{"https://what3words.com/filled.count.soap", qQNaN(), qQNaN(), "only its site can resolve"}},
        {{"https://www.google.com/maps/@95,8.72,15z", qQNaN(), qQNaN(), "without a position or an address"}},
        {{"https://www.google.com/search?q=47.24,8.72", qQNaN(), qQNaN(), "not a link of the map web service"}},
        {{"https://google.com.evil.example/maps/@1,2,3z", qQNaN(), qQNaN(), "not a link of the map web service"}},
        {{"https://www.openstreetmap.org/?lat=47.24&lon=8.72&label=Own", 47.24, 8.72}, "Own"},
    };
    for (const auto &row : cases) {
        check(row.link);
        Place place;
        (void)tool::readLink(QString::fromUtf8(row.link.text), place);
        EXPECT_EQ(place.name().toStdString(), row.name) << row.link.text;
        EXPECT_EQ(place.primaryAddress().label().toStdString(), row.label) << row.link.text;
    }
}

TEST(PositionTest, AGeoUriIsRestoredExactly)
{
    Coordinates position(-1.0 / 3, 1e-7);
    position.setAltitude(-12.125);
    position.setHorizontalAccuracy(0.1F);
    const Coordinates read = formats::readGeoUri(formats::toGeoUri(position)).position;
    EXPECT_EQ(read.latitude(), position.latitude());
    EXPECT_EQ(read.longitude(), position.longitude());
    EXPECT_EQ(read.altitude(), position.altitude());
    EXPECT_EQ(read.horizontalAccuracy(), position.horizontalAccuracy());
}
