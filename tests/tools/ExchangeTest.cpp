// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::HasSubstr;

namespace
{

QByteArray times(int count, const QByteArray &bytes)
{
    return bytes.repeated(count);
}

/// A feature with these properties beside its name, and these members beside its own.
QByteArray feature(const QByteArray &properties = {}, const QByteArray &members = {})
{
    return R"({"type":"Feature",)" + members + R"("geometry":{"type":"Point","coordinates":[7.4,46.9,540.5]},)"
           + R"("properties":{"name":"Bern")" + properties + "}}";
}

QByteArray collection(const QByteArray &features)
{
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

QByteArray exported()
{
    const Outcome outcome = places("export");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return QByteArray::fromStdString(outcome.out);
}

/// The features of an export without their times, sorted: an import gives ids in no particular order.
QStringList featuresOf(const QByteArray &text)
{
    static const QRegularExpression TIME(QStringLiteral(R"("(creation|update|lastUsed)Time":\d+,?)"));
    static const QRegularExpression END(QStringLiteral(",?\n"));
    QStringList lines = QString::fromUtf8(text).remove(TIME).split(END);
    lines.sort();
    return lines;
}

QJsonArray features(const QByteArray &text)
{
    return QJsonDocument::fromJson(text)[QLatin1String("features")].toArray();
}

QJsonObject propertiesOf(const QJsonObject &object)
{
    return object[QLatin1String("properties")].toObject();
}

/// The only feature that has this property with this value.
QJsonObject featureWith(const QByteArray &text, const char *key, const QJsonValue &value)
{
    QJsonObject found;
    for (const QJsonValue &each : features(text)) {
        if (propertiesOf(each.toObject())[QLatin1String(key)] == value) {
            EXPECT_TRUE(found.isEmpty()) << key;
            found = each.toObject();
        }
    }
    return found;
}

/// Imports bytes as a file of this extension, all of its members.
Outcome import(const Placesd &service, const char *extension, const QByteArray &bytes)
{
    QFile file(service.path("in") + QLatin1Char('.') + QLatin1String(extension));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    return places(QStringList{QStringLiteral("import"), QStringLiteral("--duplicate"), file.fileName()});
}

/// The first lines of a file of the sample data, as whole as a GeoJSON text needs to be.
QByteArray sampleData(const char *name)
{
    QFile file(QStringLiteral(SOURCES "/examples/data/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    (void)file.readLine();
    QByteArray lines;
    for (int i = 0; i < 40; ++i)
        lines += file.readLine();
    return lines;
}

} // namespace

TEST(ExchangeTest, WhatIsExportedImportedAndExportedAgainIsTheSame)
{
    const QByteArray strange =
        R"(,"nested":{"a":[1,{"b":null}]},"big":9007199254740993,"zero":0e55,"text":"\ud83c\udff0 \u05e9 %&+#\n")";
    const QByteArray members = R"("id":17,"vendor":{"x":[1.5]},"bbox":[7,46,8,47],)";
    const QByteArray misfit =
        R"(,"tags":{"a":1},"floor":"top","url":["u","v"],"horizontalAccuracy":-1,"records":"none")";
    // Records that would write over the members of their feature, or be nested too deep to be read.
    const QByteArray hostile =
        R"(,"records":[{"type":"geojson.feature","properties":{"geometry":"null","type":"\"Topology\"","bbox":"[1,2,3,4]"}},)"
        R"({"type":"geojson.properties","properties":{"name":"\"other\"","floor":"3","deep":")"
        + times(80, "[") + times(80, "]")
        + R"("}},{"type":"geojson.properties","properties":{"x":"1"}},{"externalId":"e"}])";
    const QByteArray places_ =
        sampleData("airports.geojson") + sampleData("cities.geojson") + feature(strange, members) + ","
        + feature(
            R"(,"tags":["lbs-my-home","b","a"],"aliases":["\u05e9"],"source":"s","private":true,"city":"c",)"
            R"("compactAddressLines":["x","y"],"horizontalAccuracy":2.5,"verticalAccuracy":3.5,"locationIndex":1,"otherLocations":[{"virtualData":"v","virtualDataType":2},)"
            R"({"coordinates":[1,2],"bbox":[0,1,2,3],"street":"t"}],"records":[{"type":"poi","externalId":"x",)"
            R"("properties":{"phoneNumber":"1","url":"http://a.example/%C3%A9%20"}},{"type":"own","properties":{"":"e"}}])")
        + "," + QByteArray(R"({"type":"Feature","geometry":null,"properties":{"name":"no position","city":"Bern"}})")
        + "," + feature(misfit) + "," + feature(hostile + ",\"x\":2");

    QByteArray first;
    {
        const Placesd service;
        EXPECT_EQ(import(service, "geojson", collection(places_)).out, "85 imported, 0 skipped, 0 failed\n");
        first = exported();
    }
    const QJsonObject given = QJsonDocument::fromJson(feature(strange, members)).object();
    const QJsonObject kept = featureWith(first, "text", propertiesOf(given)[QLatin1String("text")]);
    for (const char *member : {"id", "vendor", "bbox", "geometry"})
        EXPECT_EQ(kept[QLatin1String(member)], given[QLatin1String(member)]) << member;
    for (const char *name : {"nested", "text"})
        EXPECT_EQ(propertiesOf(kept)[QLatin1String(name)], propertiesOf(given)[QLatin1String(name)]) << name;
    const QJsonObject misfits = propertiesOf(QJsonDocument::fromJson(feature(misfit)).object());
    const QJsonObject keptMisfits = propertiesOf(featureWith(first, "floor", QStringLiteral("top")));
    for (auto each = misfits.begin(); each != misfits.end(); ++each)
        EXPECT_EQ(keptMisfits[each.key()], *each) << each.key().toStdString();
    EXPECT_EQ(propertiesOf(featureWith(first, "x", 2))[QLatin1String("records")].toArray().size(), 1);
    EXPECT_TRUE(first.contains("\"big\":9007199254740993"));

    const Placesd service;
    EXPECT_EQ(import(service, "geojson", first).out, "85 imported, 0 skipped, 0 failed\n");
    EXPECT_EQ(featuresOf(exported()), featuresOf(first));
    const QJsonObject full = propertiesOf(featureWith(first, "city", QStringLiteral("c")));
    EXPECT_EQ(full[QLatin1String("otherLocations")].toArray().size(), 2);
    EXPECT_EQ(full[QLatin1String("aliases")].toArray().size(), 1) << "an alias that was removed stays removed";
}

TEST(ExchangeTest, EveryFormatBecomesPlaces)
{
    const struct
    {
        const char *extension;
        QByteArray text;
        const char *geometry;
        QByteArray properties; ///< Each of them must stand in the exported feature.
    } cases[] = {
        {"jsonl",
         R"({"complete":true,"id":9,"name":"A\u00e9","tags":["t"],"location":{"coordinates":{"latitude":1,"longitude":2,"altitude":3}}})",
         "[2.0,1.0,3.0]", R"("name":"Aé"|"tags":["t"])"},
        {"gpx",
         R"(<?xml version="1.0"?><gpx xmlns="http://www.topografix.com/GPX/1/1"><metadata><name>x</name></metadata>
           <wpt lat="1.5" lon="-2"><ele>10</ele><geoidheight>2.5</geoidheight><name>A &amp; B</name><desc>d</desc><type>summit</type>
           <link href="http://a.example/"><text>no</text></link><sym>Flag</sym><extensions><name>no</name></extensions></wpt>
           <rte><rtept lat="0" lon="0"><name>no</name></rtept></rte></gpx>)",
         "[-2.0,1.5,12.5]",
         R"("name":"A & B"|"description":"d"|"tags":["summit"]|"url":"http://a.example/"|"sym":"Flag")"},
        {"kml", R"(<kml xmlns="http://www.opengis.net/kml/2.2"><Document><name>x</name><Folder><Placemark id="p">
           <name>A</name><description><![CDATA[<b>d</b>]]></description><address>Quai 1</address><phoneNumber>1</phoneNumber>
           <ExtendedData><Data name="city"><value>Bern</value></Data><SchemaData><SimpleData name="odd">é</SimpleData></SchemaData></ExtendedData>
           <Point><altitudeMode>absolute</altitudeMode><coordinates> 2,1.5,7 </coordinates></Point></Placemark></Folder></Document></kml>)",
         "[2.0,1.5,7.0]", R"("description":"<b>d</b>"|"label":"Quai 1"|"phone":"1"|"city":"Bern"|"odd":"é")"},
        {"gpx", R"(<gpx xmlns="g" xmlns:o="o"><o:wpt lat="0" lon="0"><name>no</name></o:wpt>
           <wpt o:lat="9" lat="1" lon="2"><o:name>ext</o:name><name>re<o:b>no</o:b>al</name></wpt></gpx>)",
         "[2.0,1.0]", R"("name":"real")"},
        {"geojsonl",
         R"({"type":"Feature","geometry":{"type":"Point","coordinates":[2,1]},"properties":{"name":42,"kind":"large_airport","iata":"BRN"}})",
         "[2.0,1.0]", R"("name":"42"|"aliases":["BRN"]|"tags":["large_airport","lbs-airport"])"},
        {"tsv", "name\tlat\tlon\tfavorite\tcompactAddressLines\tname\nA\t1\t2\tTRUE\tx; y\tB\n", "[2.0,1.0]",
         R"("name":"A"|"favorite":true|"compactAddressLines":["x","y"])"},
        {"csv", "\xEF\xBB\xBFName;LAT;lng;tags;CountryCode;floor;odd\r\n\"A;\"\"B\"\"\nC\";1.5;2;\"x; y\";CH;3;+\r\n",
         "[2.0,1.5]", R"("name":"A;\"B\"\nC"|"tags":["x","y"]|"countryCode":"CH"|"floor":3|"odd":"+")"},
    };
    for (const auto &row : cases) {
        const Placesd service;
        const Outcome named = import(service, row.extension, row.text);
        EXPECT_EQ(named.out, "1 imported, 0 skipped, 0 failed\n") << named.err;
        EXPECT_EQ(places("import -", row.text).status, 0) << "the content tells the format of " << row.extension;
        const std::string text = exported().toStdString();
        EXPECT_THAT(text, HasSubstr(std::string("\"coordinates\":") + row.geometry));
        for (const QByteArray &property : row.properties.split('|'))
            EXPECT_THAT(text, HasSubstr(property.toStdString())) << row.extension;
    }
}

TEST(ExchangeTest, BadInputIsNamedAndNothingOfItIsStored)
{
    const QByteArray good = feature();
    const QByteArray point = R"(<wpt lat="1" lon="2"><name>A</name></wpt>)";
    const QByteArray document =
        R"({"complete":true,"name":"A","location":{"coordinates":{"latitude":1,"longitude":2}}})";
    const int large = 5 * 1024 * 1024;
    const QByteArray deep = feature(",\"x\":" + times(100, "[") + times(100, "]"));
    const auto attributes = [](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += " a" + QByteArray::number(i) + "='1'";
        return text;
    };
    const struct
    {
        const char *extension;
        QByteArray text;
        int imported;
        const char *says;
    } cases[] = {
        {"geojson", collection(good + "," + good).chopped(40), 1, "not JSON at byte"},
        {"geojson", feature(",\"x\":\"" + times(large / 2, "x") + "\",\"y\":\"" + times(large / 2, "y") + '"'), 0,
         "feature 1: too large"},
        {"geojson", good + "\n" + deep + "\n{\"x\":1}\n" + good, 2, "feature 3: not a feature"},
        {"geojson", feature(",\"tags\":[" + times(1000, "\"t\",") + "\"t\"]"), 0, "a list of more than 1000 members"},
        {"geojson", collection(good).replace("FeatureCollection", "Topology"), 0, "neither a GeoJSON"},
        {"geojson", "{\"features\":[" + good + "],\"type\":\"Topology\"}", 1, "neither a GeoJSON"},
        {"geojson", collection(QByteArray(good).replace("Feature", "NotFeature")), 0, "feature 1: not a feature"},
        {"geojson", collection(QByteArray(good).replace("Bern", " \\t")), 0, "feature 1: no name"},
        {"geojson", collection(good + "," + times(1000, "[") + times(1000, "]") + "," + good), 2,
         "feature 2: nested too deep"},
        {"geojson", collection(good + "," + times(20000, "[")), 1, "nested too deep at byte"},
        {"geojson", collection(good + "," + QByteArray(good).replace("7.4", "187.4") + "," + good), 2,
         "feature 2: no point on the Earth"},
        {"geojson", QByteArray(good).replace("Bern", "\xFF"), 0, "not JSON at byte"},
        {"geojson", collection("[" + times(large / 2, "1,") + "1]," + good), 1, "feature 1: too large"},
        {"geojson", collection(feature(R"(,"otherLocations":[{}])")), 0, "a location that is nowhere"},
        {"jsonl", document + "\n" + document.chopped(3) + "\n\n" + document, 2, "line 2: not JSON at byte 81: "},
        {"jsonl", times(large, "x") + "\n" + document, 1, "line 1: more than the "},
        {"gpx", "<gpx>" + point + R"(<wpt lat="91" lon="2"><name>B</name></wpt>)" + point, 2,
         "waypoint 2, line 1: no point"},
        {"gpx", "<gpx>\n" + point + "\n<wpt lat=\"1\" lon=\"2\"><name>cut", 1, "not XML in line 3"},
        {"gpx", "<!DOCTYPE gpx [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><gpx>" + point + "</gpx>", 0,
         "a document type"},
        {"gpx",
         "<gpx><wpt lat=\"1\" lon=\"2\">" + times(large / 10, "<name>xxxxxxxxxx</name>") + "</wpt>" + point + "</gpx>",
         1, "too large"},
        {"gpx", "<gpx>" + QByteArray(point).replace("A", QByteArray(1, '\0')) + "</gpx>", 0, "not XML in line 1"},
        {"gpx", "<gpx>" + point + "<x" + attributes(101) + "/></gpx>", 1, "too many attributes in line 1"},
        {"gpx", "<gpx>" + point + "<x" + attributes(20000) + "/></gpx>", 1, "too large in line 1"},
        {"kml", "<kml><Placemark><name>A</name><LineString/></Placemark></kml>", 0, "placemark 1, line 1: no point"},
        {"csv", "name,lat,lon\nA,1,2\nA,1\nA,north,2\n\xFF,1,2\nA,1,2\n", 2, "row 4: no point on the Earth"},
        {"csv", "name,lat,lon\nA" + QByteArray(1, '\0') + ",1,2\nA,1,2\n", 1, "row 2: a null character in name"},
        {"csv", "name,lat,lon\n\"A,1,2\n", 0, "not CSV in row 2: a quotation mark"},
        {"csv", times(2000, "name,") + "name\n", 0, "not CSV: more than 1000 columns"},
    };
    const Placesd service;
    int stored = 0;
    for (const auto &row : cases) {
        const Outcome outcome = import(service, row.extension, row.text);
        const std::string what = row.extension + row.text.left(120).toStdString();
        EXPECT_EQ(outcome.status, 1) << what;
        EXPECT_THAT(outcome.out, HasSubstr(std::to_string(row.imported) + " imported")) << what;
        EXPECT_THAT(outcome.err, HasSubstr(row.says)) << what;
        stored += row.imported;
        EXPECT_EQ(features(exported()).size(), stored) << what;
    }
}

TEST(ExchangeTest, ProblemsComeInTheOrderOfTheFile)
{
    QByteArray rows = "name,lat,lon\n";
    QByteArray problems;
    for (int row = 2; row <= 500; ++row) {
        const bool isNowhere = row % 7 == 0;
        const bool isRefused = !isNowhere && row % 5 == 0;
        rows += (isRefused ? times(5000, "x") : QByteArray("A")) + (isNowhere ? ",91,2\n" : ",1,2\n");
        if (isNowhere || isRefused)
            problems += "row " + QByteArray::number(row)
                        + (isNowhere ? ": no point on the Earth\n"
                                     : ": more than the places service allows: a text of the place has more than 4096 "
                                       "UTF-16 units (descriptions and values of properties: 262144), or one of its "
                                       "lists more than 1000 members\n");
    }
    const Placesd service;
    const Outcome outcome = import(service, "csv", rows);
    const QString start = QStringLiteral("places: %1: ").arg(service.path("in.csv"));
    EXPECT_EQ(QString::fromStdString(outcome.err).remove(start), QString::fromUtf8(problems));
    EXPECT_EQ(outcome.out, "342 imported, 0 skipped, 157 failed\n");
    EXPECT_EQ(features(exported()).size(), 342);
}

TEST(ExchangeTest, AnImportEndsWhenTheServiceDoesAndKeepsWhatWasStored)
{
    Placesd service;
    QProcess client;
    client.start(QStringLiteral(PROGRAMS "/places"),
                 {QStringLiteral("--no-start"), QStringLiteral("import"), QStringLiteral("--format"),
                  QStringLiteral("csv"), QStringLiteral("-")});
    client.write("name,lat,lon\nA,1,2\n" + times(64 * 1024, "\n"));
    for (int i = 0; i < 1000 && features(exported()).isEmpty(); ++i)
        client.waitForBytesWritten(10);
    // Writes are answered in their order, so the addition is answered too.
    EXPECT_EQ(places("use 1").status, 0);
    service.kill();
    client.write("B,1,2\nC,1,2\n");
    client.closeWriteChannel();
    EXPECT_TRUE(client.waitForFinished(60000));
    EXPECT_EQ(client.exitCode(), 69);
    EXPECT_EQ(client.readAllStandardOutput(), "1 imported, 0 skipped, 1 failed\n");
    service.start();
    EXPECT_EQ(features(exported()).size(), 1);
}

TEST(ExchangeTest, AnExportCanBeImportedAndGoesIntoAPipe)
{
    const Placesd service;
    EXPECT_EQ(exported(), "{\"type\":\"FeatureCollection\",\"features\":[\n\n]}\n");
    EXPECT_EQ(places("add A --at 1,2").status, 0);
    const Outcome documents = places("export --format json");
    EXPECT_EQ(QByteArray::fromStdString(documents.out).count("\"complete\":true"), 1);
    EXPECT_EQ(places("import -", QByteArray::fromStdString(documents.out)).out, "0 imported, 1 skipped, 0 failed\n");
    for (const char *name : {"out.geojson.gz", "out.zip"}) {
        EXPECT_EQ(places(QStringList{QStringLiteral("export"), service.path(name)}).status, 0) << name;
        const Outcome outcome = places(QStringList{QStringLiteral("import"), service.path(name)});
        EXPECT_THAT(outcome.out, HasSubstr("0 imported, ")) << name << outcome.err;
        EXPECT_THAT(outcome.out, HasSubstr(" skipped, 0 failed\n")) << name << outcome.err;
    }
    EXPECT_EQ(places("export /no/such/folder/x").status, 1);
    EXPECT_EQ(places("export x.gpx").status, 2);
    const QByteArray pipe = service.path("pipe").toLocal8Bit();
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const int end = ::open(pipe.constData(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(places(QStringList{QStringLiteral("export"), service.path("pipe")}).status, 0);
    char byte = 0;
    EXPECT_EQ(::read(end, &byte, 1), 1) << "a pipe is written to, not replaced";
    ::close(end);
}

TEST(ExchangeTest, ALinkIsShownWithoutBeingStored)
{
    const struct
    {
        const char *link;
        const char *shows; ///< A line of the view; of the message when the link is none.
    } cases[] = {
        {"geo:48.2010,16.3695,183", "Position      48.20100, 16.36950, altitude 183 m\n"},
        {"GEO:-1,-2;CRS=WGS84;U=6.50;x=%2d", "Position      -1.00000, -2.00000 ± 6.5 m\n"},
        {"geo:0,0?z=3&q=34.5,-106.5(A+%26+B%2B)", "Name          A & B+\n"},
        {"https://m.example/?lat=1&lon=2&label=A%26B+C%2B&city=Bern", "Name          A&B C+\n"},
        {"geo:600000,5000000;crs=epsg:32632", "the reference system epsg:32632 is not known"},
        {"geo:1,2;u=-1", "the uncertainty is no number of metres"},
        {"geo:1e1,2", "no point on the Earth"},
        {"http://m.example/?lat=x&lon=2", "not a link of the map web service"},
    };
    for (const auto &row : cases) {
        const Outcome outcome =
            places(QStringList{QStringLiteral("--no-start"), QStringLiteral("show"), QString::fromUtf8(row.link)});
        EXPECT_THAT(outcome.out + outcome.err, HasSubstr(row.shows)) << row.link;
        EXPECT_EQ(outcome.status, outcome.out.empty() ? 2 : 0) << row.link;
    }
    const Placesd service;
    EXPECT_EQ(places("add geo:1,2;u=3?q=Label --name Own").out, "1\n");
    EXPECT_THAT(places("show --document 1").out, HasSubstr("\"horizontalAccuracy\":3.0"));
    EXPECT_THAT(places("show 1").out, HasSubstr("Name          Own\n"));
}

TEST(ExchangeTest, APlaceIsShownWithAllItHas)
{
    const Placesd service;
    const QByteArray properties =
        R"(,"street":"Quai","houseNumber":"1","compactAddressLines":["At the quai"],"countryCode":"CH","floor":0,)"
        R"("description":"a\u001b[2J","records":[)"
        R"({"type":"poi","properties":{"rating":"4.5","openingHours":"1;9,0,12,30;14,0,18,0","odd":"kept"}},)"
        R"({"type":"contact","externalId":"c1","properties":{"fullName":"Jane Doe","workPerimeter":"1"}},)"
        R"({"type":"lbs-review","properties":{"rating":"4","userName":"Bob","abstract":"two\nlines"}}])";
    EXPECT_EQ(import(service, "geojson", feature(properties)).status, 0);
    EXPECT_THAT(places("show 1").out, testing::MatchesRegex(R"(Id            1
Name          Bern
Description   a \[2J
Address       At the quai
              Quai 1
Country code  CH
Indoors       floor 0
Position      46.90000, 7.40000, altitude 540.5 m
Rating        4.5
Open          Mon  09:00–12:30, 14:00–18:00
(              [A-Z][a-z]+  closed
)+odd           kept
Contact       Jane Doe \(work\)
  Listing     c1
Review        rating 4, by Bob
  Abstract    two
              lines
Stored        .*)"));
}
