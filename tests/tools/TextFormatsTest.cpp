// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/GeoJsonWriter.h"
#include "support/FormatFile.h"

#include <places/Place.h>

#include <gmock/gmock.h>

#include <QtCore/QXmlStreamReader>

using namespace vela::platform::places;
using formats::MemberKind;
using formats::ReadPlace;
using testing::HasSubstr;

namespace
{

std::unique_ptr<Place> placeOf(const QByteArray &feature)
{
    formats::ExactDocument document;
    EXPECT_FALSE(document.read(feature.constData()).IsError()) << feature.constData();
    auto place = std::make_unique<Place>();
    EXPECT_EQ(formats::readFeature(document, *place), QString());
    return place;
}

/// A member in one line: its kind, its problem, or the content of the place.
QString describe(const ReadPlace &read)
{
    static const QMap<MemberKind, QString> KINDS{{MemberKind::Place, QStringLiteral("?")},
                                                 {MemberKind::Line, QStringLiteral("a line")},
                                                 {MemberKind::Area, QStringLiteral("an area")},
                                                 {MemberKind::Track, QStringLiteral("a track")},
                                                 {MemberKind::Route, QStringLiteral("a route")}};
    QString text = read.where + QStringLiteral(": ");
    if (!read.place)
        return text + (read.problem.isEmpty() ? KINDS[read.kind] : read.problem);
    const Coordinates position = read.place->primaryCoordinates();
    text += QStringLiteral("%1 at %2,%3,%4")
                .arg(read.place->name())
                .arg(position.latitude())
                .arg(position.longitude())
                .arg(position.altitude());
    for (int i = 0; i < read.place->tagCount(); ++i)
        text += QStringLiteral(" #") + read.place->tag(i);
    for (const QString &loss : read.losses)
        text += QStringLiteral(" without: ") + loss;
    return read.id.isEmpty() ? text : text + QStringLiteral(" id ") + read.id;
}

std::string describe(const FormatFile &file)
{
    QStringList lines;
    for (const ReadPlace &member : file.members)
        lines.append(describe(member));
    lines += file.notes;
    if (!file.problem.isEmpty())
        lines.append(file.problem);
    return lines.join(QLatin1Char('\n')).toStdString();
}

} // namespace

TEST(TextFormatsTest, EveryMemberIsReportedWithItsContent)
{
    formats::ReadOptions columns;
    columns.columns = {{QStringLiteral("a"), QStringLiteral("name")},
                       {QStringLiteral("b"), QStringLiteral("latitude")}};
    formats::ReadOptions areas;
    areas.areas = true;
    const struct
    {
        const char *format;
        QByteArray bytes;
        const char *members;
        formats::ReadOptions options = {};
    } cases[] = {
        {"gpx",
         R"(<gpx><wpt lat="1" lon="2"><ele>high</ele></wpt><wpt lat="x" lon="2"><name>B</name></wpt><wpt lat="1"><name>C</name></wpt>
<rte><name>Down the hill</name><rtept lat="0" lon="0"><name>no</name></rtept></rte>
<trk><trkseg><trkpt lat="0" lon="0"><name>no</name></trkpt></trkseg><name>T</name></trk><trk/></gpx>)",
         "waypoint 1, line 1: Unnamed Place at 1,2,nan without: altitude \"high\" is not a number\n"
         "waypoint 2, line 1: latitude \"x\" is not a number\n"
         "waypoint 3, line 1: the longitude is empty or missing\n"
         "route 1 \"Down the hill\", line 2: a route\n"
         "track 1 \"T\", line 3: a track\n"
         "track 2, line 3: a track"},
        {"kml",
         R"(<kml xmlns="k" xmlns:gx="http://www.google.com/kml/ext/2.2"><Document><name>no</name><Folder><name>Trip</name>
<Folder><name>Alps</name><Placemark id="p1"><name>A</name><MultiGeometry><Point><coordinates>2,1</coordinates></Point></MultiGeometry></Placemark></Folder>
<Placemark><name>B</name><ExtendedData><Data name="tags"><value>x; Trip</value></Data></ExtendedData><Point><coordinates>4,3,9</coordinates></Point></Placemark></Folder>
<Placemark><LineString><coordinates>0,0 1,1</coordinates></LineString></Placemark>
<Placemark id="q"><Polygon><outerBoundaryIs><LinearRing><coordinates>0,0 1,0 1,1 0,0</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark>
<Placemark><gx:Track><gx:coord>1 2 3</gx:coord></gx:Track></Placemark>
<Placemark><MultiGeometry><Point><coordinates>1,1</coordinates></Point><Point><coordinates>2,2</coordinates></Point></MultiGeometry></Placemark>
<Placemark><LineString><coordinates>0,0 a,1</coordinates></LineString></Placemark>
<NetworkLink><Link><href>http://a.example/b.kml</href></Link></NetworkLink></Document></kml>)",
         "placemark 1, line 2: A at 1,2,nan #Trip #Alps id p1\n"
         "placemark 2, line 3: B at 3,4,nan #x #Trip\n"
         "placemark 3, line 4: a line\n"
         "placemark 4, line 5: an area\n"
         "placemark 5, line 6: a track\n"
         "placemark 6, line 7: its geometry has 2 points; a place has one (--areas takes the first)\n"
         "placemark 7, line 8: \"a,1\" is not a position\n"
         "network link 1, line 9: links to other files are not followed; import the linked file: "
         "http://a.example/b.kml"},
        {"kml",
         "<kml><Placemark><name>A</name><Polygon><outerBoundaryIs><LinearRing><coordinates>0,0 2,0 2,2 0,2 0,0"
         "</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark></kml>",
         "placemark 1, line 1: A at 1,1,nan", areas},
        {"csv", "name;wkt\nA;POLYGON((0 0, 2 0, 2 2, 0 2, 0 0))\n",
         "row 2: A at 1,1,nan\nsemicolons; columns: geometry from wkt", areas},
        {"csv", "Title;Y;X;Tags;when\nA;47,5;8,25;a\\;b; c\nB;1;2;;\n",
         "row 2: 6 fields instead of 5\n"
         "row 3: B at 1,2,nan\n"
         "semicolons; columns: name from Title, latitude from Y, longitude from X; others kept: when"},
        {"csv", "Title;Y;X;Tags;when\nA;47,5;8,25;\"a\\;b; c\";\nB;1;2;;\n",
         "row 2: A at 47.5,8.25,nan #a;b #c\n"
         "row 3: B at 1,2,nan\n"
         "semicolons, decimal comma; columns: name from Title, latitude from Y, longitude from X; others kept: when"},
        {"csv", "id|name|geometry\n7|A|SRID=4326;POINT Z (2 1 3)\n|B|LINESTRING(0 0, 1 1)\n|C|CIRCLE\n|D|\n",
         "row 2: A at 1,2,3 id 7\n"
         "row 3: a line\n"
         "row 4: geometry \"CIRCLE\" is not a point such as POINT(8.54 47.37)\n"
         "row 5: it has neither a position nor an address\n"
         "pipes; columns as named"},
        {"csv", "name,coordinates,title\nA,\"1.5, 2\",t\nB,\"1\",t\n",
         "row 2: A at 1.5,2,nan\n"
         "row 3: coordinates \"1\" are not a latitude and a longitude\n"
         "commas; others kept: title"},
        {"csv", "name,lat,lon\nA,1,2\n\"B,1,2\nC,1,2\n\"D\",\"1\",2\nE,1\nF\"x,1,2\nG,1,2\n\"H",
         "row 2: A at 1,2,nan\n"
         "row 3: a quotation mark in the wrong place\n"
         "row 4: C at 1,2,nan\n"
         "row 5: D at 1,2,nan\n"
         "row 6: 2 fields instead of 3\n"
         "row 7: a quotation mark in the wrong place\n"
         "row 8: G at 1,2,nan\n"
         "row 9: a quotation mark in the wrong place\n"
         "commas; columns: latitude from lat, longitude from lon"},
        {"csv", "name,lat,lon\nCaf\xE9,1,2\n",
         "row 2: Café at 1,2,nan\nnot UTF-8; read as Windows-1252\ncommas; columns: latitude from lat, longitude from "
         "lon"},
        {"csv", "name,lat,lon\nCaf\xC3\xA9,1,2\n\xFF,1,2\n",
         "row 2: Café at 1,2,nan\nrow 3: name is not UTF-8\ncommas; columns: latitude from lat, longitude from lon"},
        {"csv", QByteArray("\xFF\xFEn\0a\0m\0e\0\t\0l\0a\0t\0\t\0l\0o\0n\0\r\0\n\0\xE9\0\t\0001\0\t\0002\0", 40),
         "row 2: é at 1,2,nan\ntabs, UTF-16; columns: latitude from lat, longitude from lon"},
        {"csv", "A,1,2\nB,1,2\n",
         "the first row has no heading for the name of places: found are \"A\", \"1\", \"2\", expected are headings "
         "such as name, latitude and longitude"},
        {"csv", "a,b,lon\nA,1,2\n",
         "row 2: A at 1,2,nan\ncommas; columns: name from a, latitude from b, longitude from lon", columns},
        {"csv", "a,lat,lon\nA,1,2\n", "no column is called \"b\"; there are \"a\", \"lat\", \"lon\"", columns},
    };
    for (const auto &row : cases)
        EXPECT_EQ(describe(readFile(row.format, row.bytes, row.options)), row.members)
            << row.bytes.left(200).constData();
}

TEST(TextFormatsTest, EveryPlaceIsRestoredFromItsFile)
{
    const QByteArray point = R"("geometry":{"type":"Point","coordinates":[-0.00000012,46.9,-5.5e-7]},)";
    const QByteArray features[] = {
        R"({"type":"Feature",)" + point
            + R"("properties":{"name":"=1+1","description":"\r\n a\rb \u0001\uffff","label":" x ",)"
              R"("phone":"+41","url":"http://a.example/%20?a=b&c","sym":"Flag","cmt":" c","time":"2026-02-30T00:00:00Z","fix":"4d","kind":"summit"}})",
        R"({"type":"Feature","id":17,"vendor":{"x":[1.5,null]},"bbox":[7,46,8,47],)" + point
            + R"("properties":{"name":"\"\u0000\"\u2028","tags":["a;b\\;"," c","\t","x,y"],"aliases":[],"odd":"","":"e","n":17,"time":"2026-02-28T00:00:00Z",)"
              R"("big":9007199254740993,"nested":{"a":[1]},"floor":"top","extendedAddressLines":"x","id":"other","geojson":"{}","favorite":"maybe","compactAddressLines":["a","","b"]}})",
        R"({"type":"Feature","id":"n1",)" + point
            + R"("properties":{"name":"A","description":"1 &lt; 2 <b>x</b> \n\n\n\u00a0&","tags":["lbs-my-home","trip"],"aliases":[],)"
              R"("private":true,"floor":-2,"expiryTime":9,"horizontalAccuracy":2.1,"locationIndex":1,"otherLocations":[{"virtualData":"v"}],)"
              R"("records":[{"type":"poi","externalId":"n1","properties":{"phoneNumber":"1","":"e"}}]}})",
    };
    for (const char *format : {"gpx", "kml", "kmz", "csv"}) {
        for (const QByteArray &feature : features) {
            const auto place = placeOf(feature);
            const FormatFile read = readFile(format, writeFile(format, {place.get()}));
            ASSERT_EQ(read.members.size(), 1U) << format;
            ASSERT_TRUE(read.members[0].place) << describe(read);
            EXPECT_EQ(formats::toGeoJsonFeature(*read.members[0].place), formats::toGeoJsonFeature(*place)) << format;
        }
    }
}

TEST(TextFormatsTest, EditedTextsTakePrecedenceOverTheRest)
{
    const auto place = placeOf(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[2,1]},"properties":)"
                               R"({"name":"A\u0001","tags":["a "],"kind":7}})");
    for (const char *format : {"gpx", "kml", "csv"}) {
        QByteArray bytes = writeFile(format, {place.get()});
        bytes.replace("A\xEF\xBF\xBD", "New")
            .replace("A\x01,", "New,")
            .replace(">a<", ">b; c<")
            .replace(",\"a \",", ",b; c,");
        const FormatFile read = readFile(format, bytes);
        EXPECT_THAT(describe(read), HasSubstr("New at 1,2,nan #b #c")) << format << bytes.constData();
    }
}

TEST(TextFormatsTest, ElementsComeInTheOrderOfTheSchema)
{
    const struct
    {
        const char *format;
        const char *parent;
        QStringList order;
    } cases[] = {
        {"gpx", "wpt",
         QStringLiteral("ele time magvar geoidheight name cmt desc src link sym type fix sat hdop vdop pdop "
                        "ageofdgpsdata dgpsid extensions")
             .split(QLatin1Char(' '))},
        {"kml", "Placemark",
         QStringLiteral("name address phoneNumber description ExtendedData Point").split(QLatin1Char(' '))},
        {"kml", "Document", {QStringLiteral("Placemark"), QStringLiteral("Folder")}},
    };
    const QByteArray geometry = R"({"type":"Feature","geometry":{"type":"Point","coordinates":[180,1,3]},"id":"n",)";
    const auto full = placeOf(
        geometry
        + R"("properties":{"name":"A","description":"d","label":"l","phone":"1","url":"http://a.example/",)"
          R"("time":"2026-02-28T00:00:00Z","magvar":"1.5","cmt":"c","src":"s","sym":"y","kind":"k","fix":"2d","sat":"4",)"
          R"("hdop":"1","vdop":"1","pdop":"1","ageofdgpsdata":"1","dgpsid":"1","geoidheight":"1","tags":["t"]}})");
    const auto bare = placeOf(geometry + R"("properties":{"name":"B"}})");
    const auto nowhere = placeOf(R"({"type":"Feature","geometry":null,"properties":{"name":"C","city":"c"}})");
    for (const auto &row : cases) {
        const QByteArray bytes = writeFile(row.format, {full.get(), bare.get(), nowhere.get(), full.get()});
        EXPECT_EQ(bytes.count(" id=\"n\""), row.format == QByteArray("kml") ? 1 : 0) << "an id is unique in a file";
        QXmlStreamReader xml(bytes);
        QVector<int> last{-1};
        QStringList path{QString()};
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement) {
                if (path.last() == QLatin1String(row.parent)) {
                    const auto position = row.order.indexOf(xml.name().toString());
                    EXPECT_GE(position, last.last()) << bytes.constData();
                    last.last() = static_cast<int>(position);
                }
                path.append(xml.name().toString());
                last.append(-1);
            } else if (xml.tokenType() == QXmlStreamReader::EndElement) {
                path.removeLast();
                last.removeLast();
            }
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        EXPECT_EQ(readFile(row.format, bytes).members.size(), row.format == QByteArray("gpx") ? 3U : 4U);
    }
}
