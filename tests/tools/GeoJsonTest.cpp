// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/GeoJsonWriter.h"
#include "support/ReadFile.h"

#include <gmock/gmock.h>

#include <QtCore/QByteArray>

#include <cmath>

using formats::MemberKind;
using testing::HasSubstr;

namespace
{

QByteArray feature(const QByteArray &geometry, const QByteArray &properties = R"("name":"A")")
{
    return R"({"type":"Feature","geometry":)" + geometry + R"(,"properties":{)" + properties + "}}";
}

QByteArray shape(const char *type, const QByteArray &coordinates)
{
    return R"({"type":")" + QByteArray(type) + R"(","coordinates":)" + coordinates + "}";
}

QByteArray point(const QByteArray &coordinates)
{
    return shape("Point", coordinates);
}

QByteArray collection(const QByteArray &features)
{
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

const QByteArray GOOD = feature(point("[2,1]"));
constexpr char READ[] = "A 1 2\n";

} // namespace

TEST(GeoJsonTest, EachGeometryIsAPlaceAKindOrAProblem)
{
    // A C around a bay, with its centre outside; a square with a hole in the middle.
    const QByteArray bay = "[[[0,0],[9,0],[9,3],[3,3],[3,6],[9,6],[9,9],[0,9],[0,0]]]";
    const QByteArray holed = "[[[0,0],[8,0],[8,8],[0,8],[0,0]],[[1,1],[7,1],[7,7],[1,7],[1,1]]]";
    const struct
    {
        QByteArray geometry;
        const char *line;
        const char *withAreas; ///< Null when it is the same.
    } cases[] = {
        {point("[2,1]"), "A 1 2", nullptr},
        {point("[2,1,\"x\"]"), "A 1 2 / altitude \"x\" is not a number", nullptr},
        {shape("MultiPoint", "[[2,1]]"), "A 1 2", nullptr},
        {shape("MultiPoint", "[[2,1],[3,1]]"), "its geometry has 2 points; a place has one (--areas takes the first)",
         "A 1 2"},
        {R"({"type":"GeometryCollection","geometries":[)" + point("[2,1]") + "]}", "A 1 2", nullptr},
        {R"({"type":"GeometryCollection","geometries":[)" + shape("Polygon", holed) + "," + point("[2,1]") + "]}",
         "A 1 2", nullptr},
        {shape("LineString", "[[0,0],[2,0],[2,0],[10,0]]"), "line", "A 0 5"},
        {shape("LineString", "[[3,4],[3,4]]"), "line", "A 4 3"},
        {shape("MultiLineString", "[[[0,0],[1,0]],[[0,50],[0,60]]]"), "line", "A 55 0"},
        {shape("LineString", "[[0,0],[0,95]]"), "line", "its line is not a list of positions"},
        {shape("Polygon", bay), "area", "A 4.5 1.5"},
        {shape("Polygon", holed), "area", "A 4 0.5"},
        {shape("MultiPolygon", "[[[[0,0],[1,0],[1,1],[0,1]]],[[[10,10],[14,10],[14,12],[10,12]]]]"), "area", "A 11 12"},
        {shape("Polygon", "[[[1,1],[2,1],[3,1],[1,1]]]"), "area", "A 1 1"},
        {shape("Polygon", "[[[0,0],[1,1]]]"), "area",
         "its area has a ring that is not a list of at least three positions"},
        {"null", "it has neither a position nor an address", nullptr},
        {point("[]"), "it has neither a position nor an address", nullptr},
        {shape("MultiPolygon", "[]"), "it has neither a position nor an address", nullptr},
        {point("{}"), "its coordinates are not a list of numbers", nullptr},
        {point("[7]"), "its coordinates are not longitude and latitude, but 1 number", nullptr},
        {point("[\"abc\",1]"), "longitude \"abc\" is not a number", nullptr},
        {point("[7,\"46\"]"), "latitude \"46\" is a text, not a number", nullptr},
        {point("[7,null]"), "the latitude is not a number", nullptr},
        {point("[7,195.25]"), "latitude 195.25 is beyond 90", nullptr},
        {point("[46,107.5]"), "latitude 107.5 is beyond 90; are longitude and latitude swapped?", nullptr},
        {point("[187.4,46]"), "longitude 187.4 is beyond 180", nullptr},
        {shape("Circle", "[2,1]"), "its geometry is of the unknown type \"Circle\"", nullptr},
        {"{}", "its geometry has no type", nullptr},
    };
    formats::ReadOptions areas;
    areas.areas = true;
    for (const auto &row : cases) {
        EXPECT_EQ(ReadFile(feature(row.geometry), ".json").lines(), row.line + std::string("\n"))
            << row.geometry.data();
        EXPECT_EQ(ReadFile(feature(row.geometry), ".json", areas).lines(),
                  (row.withAreas ? row.withAreas : row.line) + std::string("\n"))
            << row.geometry.data();
    }
    const ReadFile area(feature(shape("Polygon", bay)), ".json", areas);
    ASSERT_TRUE(area.members.at(0).place);
    const auto box = area.members[0].place->location(0).boundingBox();
    EXPECT_EQ(box.topLeft(), (vela::platform::places::Coordinates(9, 0)));
    EXPECT_EQ(box.bottomRight(), (vela::platform::places::Coordinates(0, 9)));
}

TEST(GeoJsonTest, AnInvalidMemberDoesNotAffectOthers)
{
    const QByteArray huge = feature(point("[2,1]"), R"("name":"A","x":1e400,"y":[-1E+999,0e999,12])");
    const QByteArray large = feature(point("[2,1]"), R"("x":")" + QByteArray(5 * 1024 * 1024, 'x') + '"');
    const QByteArray deep = feature(point("[2,1]"), R"("x":)" + QByteArray(100, '[') + QByteArray(100, ']'));
    const struct
    {
        QByteArray faulty;
        const char *line;
    } cases[] = {
        {huge, "A 1 2 / the number \"1e400\" is too large and is kept as a text"},
        {feature(point("[2,1e400]")),
         "latitude \"1e400\" is not a number / the number \"1e400\" is too large and is kept "
         "as a text"},
        {large, "too large"},
        {deep, "nested too deep"},
        {feature(point("[2,01]")), "not JSON: Missing a comma or ']' after an array element."},
        {feature(point("[2,1]"), "\"name\":\"\xFF\""), "not JSON: Invalid encoding in string."},
        {feature(point("[2,1]"), "\"name\":\"\\ud800\""), "not JSON: The surrogate pair in string is invalid."},
        {feature(point("[2,1]"), QByteArray("\"name\":\"A\0\"", 11)),
         "not JSON: Missing a closing quotation mark in string."},
        {feature(point("[2,1]"), R"("name":" \t")"), "Unnamed Place 1 2"},
        {feature(point("[2,1]"), ""), "Unnamed Place 1 2"},
        {R"({"type":"Point"})", "not a feature: its type is \"Point\""},
        {"17", "not a feature"},
    };
    const std::string good = READ;
    for (const auto &row : cases) {
        const std::string expected = good + row.line + "\n" + good;
        for (const QByteArray &file :
             {collection(GOOD + "," + row.faulty + " , " + GOOD), GOOD + '\n' + row.faulty + "\r\n" + GOOD,
              "\x1E" + GOOD + "\n\x1E" + row.faulty + "\n\x1E" + GOOD + '\n'}) {
            const ReadFile read(file, ".x");
            EXPECT_EQ(read.lines(), expected) << file.left(300).data();
            EXPECT_EQ(read.problem, "") << file.left(300).data();
        }
    }
    const ReadFile read(collection(huge), ".json");
    EXPECT_THAT(formats::toGeoJsonFeature(*read.members.at(0).place).toStdString(),
                HasSubstr(R"("x":"1e400","y":["-1E+999",0.0,12])"));
}

TEST(GeoJsonTest, AnErrorBetweenMembersEndsOnlyItsText)
{
    const QByteArray open = R"({"type":"FeatureCollection","features":[)";
    const struct
    {
        QByteArray file;
        const char *lines;
        const char *problem;
    } cases[] = {
        {collection(GOOD + "," + GOOD).chopped(40), READ, "in the middle of a value"},
        {open + GOOD + " " + GOOD + "]}", READ, "a comma is missing"},
        {open + GOOD + ",,]}", READ, "a value is missing"},
        {open + GOOD + "]]", READ, "not JSON: "},
        {open + GOOD + "],\"x\":tru}", READ, "not JSON: Invalid value"},
        {open + GOOD + "," + QByteArray(20000, '['), READ, "nested too deep"},
        {open + GOOD + ",{]}", READ, "a bracket does not match"},
        {"{\"features\":[" + GOOD + "],\"type\":\"Topology\"}", READ, "neither a GeoJSON"},
        {"{\"type\":\"Topology\",\"features\":[" + GOOD + "]}", "", "neither a GeoJSON"},
        {"[" + GOOD + "]", "", "neither a GeoJSON"},
        {GOOD + "\n" + GOOD.chopped(9) + "\n" + GOOD, "A 1 2\nnot JSON: it ends in the middle of a value\nA 1 2\n", ""},
        {GOOD.chopped(2) + "]}\n" + GOOD, "not JSON: a bracket does not match\nA 1 2\n", ""},
        {"\x1E" + GOOD.chopped(9) + "\n\x1E" + GOOD, "not JSON: it ends in the middle of a value\nA 1 2\n", ""},
        {"{\n\"type\":\"Feature\",\"geometry\":null,\n\"properties\":{\"city\":\"B\"}}\n\n" + GOOD,
         "Unnamed Place nan nan\nA 1 2\n", ""},
    };
    for (const auto &row : cases) {
        const ReadFile read(row.file, ".geojson");
        EXPECT_EQ(read.lines(), row.lines) << row.file.left(300).data();
        EXPECT_THAT(read.problem, HasSubstr(row.problem)) << row.file.left(300).data();
        EXPECT_EQ(read.problem.empty(), row.problem[0] == '\0') << row.file.left(300).data() << read.problem;
    }
}

TEST(GeoJsonTest, TheJsonFormatIsDetectedByContent)
{
    const QByteArray document =
        R"({"id":1,"complete":true,"name":"D","location":{"coordinates":{"latitude":1,"longitude":2}}})";
    for (const char *name : {".json", ".jsonl", ".ndjson", ".geojson", ".geojsonl", ".x"}) {
        EXPECT_EQ(ReadFile(GOOD + '\n' + GOOD, name).lines(), "A 1 2\nA 1 2\n") << name;
        EXPECT_EQ(ReadFile("\x1E" + GOOD, name).lines(), READ) << name;
        EXPECT_EQ(ReadFile(document + '\n' + document, name).lines(), "D 1 2\nD 1 2\n") << name;
    }
}

TEST(GeoJsonTest, FilesOfOtherMakersAreRead)
{
    const QByteArray url = R"("http://maps.example/?cid=1")";
    const QByteArray before =
        R"("Google Maps URL":)" + url + R"(,"Title":"T","Published":"2018-01-01T00:00:00Z","Location":)"
        + R"({"Address":"Kramgasse 1","Business Name":"B","Country Code":"CH","Geo Coordinates":{"Latitude":"1"}})";
    const QByteArray now = R"("date":"2024-01-01T00:00:00Z","google_maps_url":)" + url
                           + R"(,"location":{"name":"T","address":"Kramgasse 1","country_code":"CH"})";
    const QByteArray elements = R"({"version":0.6,"generator":"g","osm3s":{"copyright":"c"},"elements":[
        {"type":"node","id":17,"lat":1,"lon":2,"tags":{"name":"N","addr:housenumber":"1","addr:street":"S","addr:city":"C",
         "contact:phone":"+41","website":"http://a.example/","opening_hours":"24/7","amenity":"cafe"}},
        {"type":"node","id":18,"lat":1,"lon":2},
        {"type":"way","id":3,"center":{"lat":1,"lon":2},"tags":{"name":"W"}},
        {"type":"way","id":4,"nodes":[1,2,3,1],"bounds":{"minlat":0,"minlon":0,"maxlat":2,"maxlon":4},"tags":{"name":"P"}},
        {"type":"way","id":5,"nodes":[1,2]},
        {"type":"relation","id":6},
        {"type":"count","id":7}]})";
    for (const QByteArray &properties : {before, now}) {
        const ReadFile read(collection(feature(point("[2,1]"), properties)), ".json");
        ASSERT_EQ(read.lines(), "T 1 2\n");
        const auto &place = *read.members[0].place;
        EXPECT_EQ(place.primaryAddress().label().toStdString(), "Kramgasse 1");
        EXPECT_EQ(place.primaryAddress().isoAlpha2CountryCode().toStdString(), "CH");
        EXPECT_EQ("\"" + place.primaryUrl().toString().toUtf8() + "\"", url);
        EXPECT_EQ(ReadFile(feature(point("[0,0]"), properties), ".json").lines(), "T nan nan\n");
    }
    const ReadFile read(elements, ".x");
    EXPECT_EQ(read.lines(), "N 1 2\nW 1 2\narea\nline\narea\nnot a feature: its type is \"count\"\n");
    EXPECT_EQ(read.members.at(0).id.toStdString(), "node/17");
    const std::string exported = formats::toGeoJsonFeature(*read.members[0].place).toStdString();
    for (const char *part :
         {R"("id":"node/17")", R"("houseNumber":"1")", R"("street":"S")", R"("city":"C")", R"("phone":"+41")",
          R"("url":"http://a.example/")", R"("opening_hours":"24/7")", R"("tags":["cafe"])"})
        EXPECT_THAT(exported, HasSubstr(part));
    formats::ReadOptions areas;
    areas.areas = true;
    EXPECT_THAT(ReadFile(elements, ".x", areas).lines(), HasSubstr("P 1 2\n"));
}
