// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/Format.h"
#include "formats/GeoJsonWriter.h"
#include "formats/Input.h"
#include "PlaceLink.h"
#include "support/Files.h"

#include <places/Place.h>

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <utility>

namespace
{

using formats::ReadPlace;
using vela::platform::places::Place;

QByteArray times(int count, const QByteArray &bytes)
{
    return bytes.repeated(count);
}

/// The exported feature of a place, without the values of every new place.
std::string featureOf(const Place &place)
{
    QByteArray text = formats::toGeoJsonFeature(place);
    for (const char *usual : {R"("type":"Feature",)", R"("type":"Point",)", R"(,"favorite":false)",
                              R"(,"lastUsedTime":0)", R"(,"tags":[])", R"(,"aliases":[])", R"(,"private":false)",
                              R"(,"records":[])", R"(,"usageCount":0,"creationTime":0,"updateTime":0)"})
        text.replace(usual, "");
    return text.toStdString();
}

/// Reads a file: for each member the exported feature or the problem, then the error of the file.
std::vector<std::string> read(const char *format, const QByteArray &bytes, int most = 1000)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("in"));
    files::write(path, bytes);
    formats::Input input(path);
    std::vector<std::string> lines;
    const QString problem = formats::formatByName(QLatin1String(format))->read(input, {}, [&](const ReadPlace &member) {
        lines.push_back((member.where + QStringLiteral(": ") + member.problem).toStdString());
        if (!member.place)
            return --most > 0;
        lines.back() += featureOf(*member.place);
        formats::ExactDocument exported;
        Place again;
        EXPECT_FALSE(exported.read(formats::toGeoJsonFeature(*member.place).constData()).IsError());
        EXPECT_EQ(formats::readFeature(exported, again), QString());
        EXPECT_EQ(featureOf(again), featureOf(*member.place)) << "equal after export, import and export";
        return --most > 0;
    });
    if (!problem.isEmpty())
        lines.push_back(problem.toStdString());
    return lines;
}

/// The place of a link, or the reason why it has none.
std::vector<std::string> readLink(const QByteArray &link)
{
    Place place;
    const QString problem = tool::readLink(QString::fromUtf8(link), place);
    return {problem.isEmpty() ? featureOf(place) : problem.toStdString()};
}

/// Tests the cases of a format in data/readers.txt: "=== FORMAT", input bytes, "---", expected result.
void expectAll(const char *format)
{
    const QByteArray file = files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/readers.txt"));
    const QString start = QStringLiteral("=== %1\n").arg(QLatin1String(format));
    int tried = 0;
    for (const QString &each : QString::fromUtf8(file).split(QRegularExpression(QStringLiteral("(?m)^(?==== )")))) {
        if (!each.startsWith(start))
            continue;
        const QByteArray bytes = each.section(QStringLiteral("\n---\n"), 0, 0).mid(start.size()).toUtf8();
        std::string gives;
        for (const std::string &line :
             start.startsWith(QLatin1String("=== link")) ? readLink(bytes) : read(format, bytes))
            gives += line + "\n";
        EXPECT_EQ(gives, each.section(QStringLiteral("\n---\n"), 1).toStdString()) << bytes.constData();
        ++tried;
    }
    EXPECT_GT(tried, 2);
}

using Lines = std::vector<std::string>;
const QByteArray FEATURE =
    R"({"type":"Feature","geometry":{"type":"Point","coordinates":[2,1]},"properties":{"name":"A"}})";
const QByteArray DOCUMENT = R"({"complete":true,"name":"A","location":{"coordinates":{"latitude":1,"longitude":2}}})";
const QByteArray POINT = R"(<wpt lat="1" lon="2"><name>A</name></wpt>)";
/// The result for each of these.
const std::string A = R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"A"}})";
const QByteArray MEGABYTE = times(1024 * 1024, "x");

} // namespace

TEST(GeoJsonReader, MapsEveryPropertyAndReportsInvalidFeatures)
{
    const auto with = [&](const QByteArray &more) { return QByteArray(FEATURE).replace("\"A\"", "\"A\"," + more); };
    const auto collection = [](const QByteArray &features) { return "{\"features\":[" + features + "]}"; };
    expectAll("geojson");
    const std::pair<QByteArray, Lines> cases[] = {
        {with("\"x\":\"" + times(3, MEGABYTE) + "\",\"y\":\"" + times(2, MEGABYTE) + '"'), {"feature 1: too large"}},
        {with("\"x\":\"" + times(5, MEGABYTE) + '"'), {"feature 1: too large"}},
        {collection("[" + times(3 * 1024 * 1024, "1,") + "1]," + FEATURE), {"feature 1: too large", "feature 2: " + A}},
        {FEATURE + times(3, MEGABYTE).replace('x', ' ') + FEATURE, {"feature 1: " + A, "feature 2: " + A}},
        {FEATURE + times(5, MEGABYTE).replace('x', ' ') + FEATURE, {"feature 1: " + A, "feature 2: " + A}},
        {with("\"records\":[{\"properties\":{" + times(1000, "\"k\":1,") + "\"k\":1}}]"),
         {"feature 1: a list of more than 1000 members"}},
        {with(times(1000, "\"k\":1,") + "\"k\":1"), {"feature 1: a list of more than 1000 members"}},
        {with("\"tags\":[" + times(1000, "\"t\",") + "\"t\"]"), {"feature 1: a list of more than 1000 members"}},
        {collection(times(1000, "[") + times(1000, "]") + "," + FEATURE),
         {"feature 1: nested too deep", "feature 2: " + A}},
        {collection(FEATURE + "," + times(20000, "[")), {"feature 1: " + A, "at byte 10107: nested too deep"}},
        {with("\"x\":\"\xFF\""), {"at byte 0: not JSON: Invalid encoding in string."}},
        {"", {}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("geojson", bytes), gives);
}

TEST(CsvReader, ReadsRowsUnderHeadings)
{
    expectAll("csv");
    const std::pair<QByteArray, Lines> cases[] = {
        {"\xEF\xBB\xBFName;LAT;lng;tags;CountryCode;floor;odd\r\n\"A;\"\"B\"\"\nC\";1.5;2;\"x; y\";CH;3;+\r\n",
         {R"(row 2: {"geometry":{"coordinates":[2.0,1.5]},"properties":{"name":"A;\"B\"\nC","countryCode":"CH",)"
          R"("floor":3,"tags":["x","y"],"odd":"+"}})"}},
        {"name,lat,lon\nA,1,2\nA,1\nA,north,2\n\xFF,1,2\nA" + QByteArray(1, '\0') + ",1,2\nA,1,2\n",
         {"row 2: " + A, "row 3: 2 fields instead of 3", "row 4: latitude \"north\" is not a number",
          R"(row 5: {"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"ÿ"}})",
          "row 6: a null character in name", "row 7: " + A}},
        {times(1000, "name,") + "name\n", {"not CSV: more than 1000 columns"}},
        {times(998, "x,") + "name,lat\n" + times(998, ",") + "A,1\n", {"row 2: the longitude is empty or missing"}},
        {"", {"not CSV: the row with the names of the columns is missing"}},
        {"name,\xFF,\xC3\xA9\nA,1,2\n", {"row 2: it has neither a position nor an address"}},
        {"name,\xC3\xA9,\xFF\nA,1,2\n", {"not CSV: the first row is not UTF-8"}},
        {"name,lat,lon\n" + times(5, MEGABYTE) + ",1,2\nA,1,2\n",
         {"row 2: the row has more than 4194304 bytes", "row 3: " + A}},
        {"name,lat,lon\n" + times(5, MEGABYTE + ",") + "1\nA,1,2\n",
         {"row 2: the row has more than 4194304 bytes", "row 3: " + A}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("csv", bytes), gives);
}

TEST(XmlReader, ReadsWaypointsAndPlacemarks)
{
    const auto attributes = [](int count) {
        QByteArray text = "<x";
        for (int i = 0; i < count; ++i)
            text += " a" + QByteArray::number(i) + "='1'";
        return text + "/>";
    };
    const std::string isA = "waypoint 1, line 1: " + A;
    expectAll("gpx");
    expectAll("kml");
    const std::pair<QByteArray, Lines> cases[] = {
        {"<wpt lat=\"1\" lon=\"2\">" + times(500000, "<name>xxxxxxxxxx</name>") + "</wpt>" + POINT,
         {"waypoint 1, line 1: too large", "waypoint 2, line 1: " + A}},
        {QByteArray(POINT).replace("A", QByteArray(1, '\0')), {"not XML in line 1: Unexpected ''."}},
        {POINT + attributes(100) + attributes(101), {isA, "a tag has too many attributes in line 1"}},
        {POINT + attributes(20000), {isA, "a text or tag is too large in line 1"}},
        {times(5, MEGABYTE), {"a text or tag is too large in line 1"}},
        {POINT + "<x>&none;</x>" + times(5, MEGABYTE), {isA, "not XML in line 1: Entity 'none' not declared."}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("gpx", "<gpx>" + bytes + "</gpx>"), gives);
}

TEST(DocumentReader, ReadsALineForEachPlace)
{
    const auto with = [](const QByteArray &more) { return DOCUMENT.chopped(1) + "," + more + "}"; };
    expectAll("json");
    const std::pair<QByteArray, Lines> cases[] = {
        {times(5, MEGABYTE) + "\n" + DOCUMENT + "\n", {"line 1: the line has more than 4194304 bytes", "line 2: " + A}},
        {with("\"tags\":[" + times(1000, "\"t\",") + "1]") + "\n" + with("\"x\":[" + times(999, "1,") + "1]"),
         {"line 1: a list of more than 1000 members", "line 2: " + A}},
        {DOCUMENT + QByteArray(1, '\0') + "\n{}\n7",
         {"line 1: The document is not JSON: it has a null character in it.",
          "line 2: The document is not that of a place: it has no \"complete\" that is true or false.",
          "line 3: The document is not a JSON object."}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("json", bytes), gives);
    const Lines lines = read("json", times(20, times(5000, " ") + DOCUMENT + "\n") + "x");
    ASSERT_EQ(lines.size(), 21U) << "more than one input buffer";
    EXPECT_EQ(lines[19], "line 20: " + A);
}

TEST(PlaceLink, IsReadAsAPlace)
{
    expectAll("link");
    for (const char *text : {"geo:", "HTTP://", "https://x"})
        EXPECT_TRUE(tool::isLink(QLatin1String(text))) << text;
    for (const char *text : {"", "geo", "xgeo:1,2", "ftp://x"})
        EXPECT_FALSE(tool::isLink(QLatin1String(text))) << text;
}

TEST(Input, ReadsAFileAndReportsProblems)
{
    const QTemporaryDir folder;
    EXPECT_EQ(formats::Input(folder.path()).problem(), QStringLiteral("Is a directory"));
    EXPECT_EQ(formats::Input(folder.filePath(QStringLiteral("x"))).problem(),
              QStringLiteral("No such file or directory"));
    const QString path = folder.filePath(QStringLiteral("in"));
    files::write(path, "\xEF\xBB\xBF" + times(4096, "a") + "b");
    const auto openFiles = [] {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
    };
    const auto before = openFiles();
    {
        formats::Input input(path);
        EXPECT_EQ(input.problem(), QString());
        EXPECT_EQ(input.head(), times(4093, "a"));
        char bytes[5000];
        EXPECT_EQ(input.read(bytes, 1000), 1000U);
        EXPECT_EQ(input.read(bytes, sizeof bytes), 3093U) << "the rest of the head";
        EXPECT_EQ(input.read(bytes, sizeof bytes), 4U);
        EXPECT_EQ(std::string(bytes, 4), "aaab");
        EXPECT_EQ(input.read(bytes, sizeof bytes), 0U);
        EXPECT_NEAR(input.progress(), 1, 0.001);
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(Formats, StopWhenTheCallerStops)
{
    const std::pair<const char *, QByteArray> cases[] = {
        {"geojson", FEATURE + FEATURE + "x"},
        {"csv", "name,lat,lon\nA,1,2\nA,1,2\n\""},
        {"gpx", "<gpx>" + POINT + POINT + "<"},
        {"json", "1\n2\n"},
    };
    for (const auto &[format, bytes] : cases)
        EXPECT_EQ(read(format, bytes, 1).size(), 1U) << format;
}

TEST(Formats, AreDetectedByNameAndByContent)
{
    const std::pair<const char *, const char *> contents[] = {
        {" <?xml?><kml>", "kml"},
        {"<gpx>", "gpx"},
        {"{\"features\" : [", "geojson"},
        {"{\"type\":\"Feature\"", "geojson"},
        {"[{", "geojson"},
        {"{\"name\":\"features\"}", "json"},
        {"name,lat", "csv"},
        {"", "csv"},
    };
    for (const auto &[head, format] : contents)
        EXPECT_STREQ(formats::formatByContent(head).name, format) << head;
    const std::pair<const char *, const char *> paths[] = {
        {"a.GEOJSON", "geojson"}, {"a.geojsonl", "geojson"}, {"a.ndjson", "json"}, {"a.tsv", "csv"},
        {"a.kml", "kml"},         {"a.json", "geojson"},     {"a", nullptr},       {"geojson", nullptr},
    };
    for (const auto &[path, format] : paths) {
        const formats::Format *found = formats::formatByPath(QLatin1String(path));
        EXPECT_STREQ(found ? found->name : nullptr, format) << path;
    }
    EXPECT_EQ(formats::formatByName(QStringLiteral("tsv")), nullptr);
    EXPECT_EQ(formats::formatNames(true).join(QLatin1Char(' ')),
              QStringLiteral("geojson json gpx kml csv vcard kmz json-latin1"));
}
