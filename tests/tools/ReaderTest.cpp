// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceLink.h"
#include "support/Files.h"
#include "support/FormatFile.h"
#include "support/VCards.h"

#include <places/Place.h>

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <utility>

namespace
{

using Lines = std::vector<std::string>;

QByteArray times(int count, const QByteArray &bytes)
{
    return bytes.repeated(count);
}

/// A member of a file: the feature that it is exported as, or why it is no place, or its kind; and what it lost.
std::string lineOf(const formats::ReadPlace &member)
{
    constexpr const char *KINDS[] = {"place", "line", "area", "track", "route"};
    QString line = member.where + QStringLiteral(": ") + member.problem;
    if (member.place) {
        const std::string feature = featureOf(*member.place);
        EXPECT_EQ(featureOf(*placeOf(formats::toGeoJsonFeature(*member.place))), feature) << "imported again";
        line += QString::fromStdString(feature);
    } else if (member.problem.isEmpty()) {
        line += QLatin1String(KINDS[static_cast<int>(member.kind)]);
    }
    if (!member.id.isEmpty())
        line += QStringLiteral(" id ") + member.id;
    for (const QString &loss : member.losses)
        line += QStringLiteral(" without: ") + loss;
    return line.toStdString();
}

/// What a format makes of a file: its members, notes about it, and what is wrong with it.
Lines read(const char *format, const QByteArray &bytes, const formats::ReadOptions &options = {})
{
    const FormatFile file = readFile(format, bytes, options);
    Lines lines;
    for (const formats::ReadPlace &member : file.members)
        lines.push_back(lineOf(member));
    for (const QString &note : file.notes)
        lines.push_back("note: " + note.toStdString());
    if (!file.problem.isEmpty())
        lines.push_back(file.problem.toStdString());
    return lines;
}

/// The place of a link, or the reason why it has none.
Lines readLink(const QByteArray &link)
{
    vela::platform::places::Place place;
    const QString problem = tool::readLink(QString::fromUtf8(link), place);
    return {problem.isEmpty() ? featureOf(place) : problem.toStdString()};
}

/// Tries the cases of a format in data/readers.txt: "=== FORMAT", perhaps with options of the client, then the bytes,
/// "---", and what they give.
void expectAll(const QString &format)
{
    const QByteArray file = files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/readers.txt"));
    int tried = 0;
    for (const QString &each : QString::fromUtf8(file).split(QRegularExpression(QStringLiteral("(?m)^=== ")))) {
        const QStringList head =
            each.section(QLatin1Char('\n'), 0, 0).split(QRegularExpression(QStringLiteral("[ ,]")));
        if (head[0] != format)
            continue;
        formats::ReadOptions options;
        options.areas = head.contains(QStringLiteral("--areas"));
        for (const QString &column : head.filter(QStringLiteral("=")))
            options.columns[column.section(QLatin1Char('='), 0, 0)] = column.section(QLatin1Char('='), 1);
        const QByteArray bytes = each.section(QLatin1Char('\n'), 1).section(QStringLiteral("\n---\n"), 0, 0).toUtf8();
        std::string gives;
        for (const std::string &line :
             format == QLatin1String("link") ? readLink(bytes) : read(format.toUtf8().constData(), bytes, options))
            gives += line + "\n";
        EXPECT_EQ(gives, each.section(QStringLiteral("\n---\n"), 1).toStdString()) << bytes.constData();
        ++tried;
    }
    EXPECT_GT(tried, 2);
}

const QByteArray FEATURE =
    R"({"type":"Feature","geometry":{"type":"Point","coordinates":[2,1]},"properties":{"name":"A"}})";
const QByteArray DOCUMENT = R"({"complete":true,"name":"A","location":{"coordinates":{"latitude":1,"longitude":2}}})";
const QByteArray POINT = R"(<wpt lat="1" lon="2"><name>A</name></wpt>)";
/// The result for each of these.
const std::string A = R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"A"}})";
const std::string HEADINGS = "note: commas; columns: latitude from lat, longitude from lon";
const QByteArray MEGABYTE = times(1024 * 1024, "x");

QByteArray withProperty(const QByteArray &more)
{
    return QByteArray(FEATURE).replace("\"A\"", "\"A\"," + more);
}

} // namespace

TEST(GeoJsonReader, MapsEveryPropertyAndReportsInvalidFeatures)
{
    const auto collection = [](const QByteArray &features) { return "{\"features\":[" + features + "]}"; };
    expectAll(QStringLiteral("geojson"));
    const std::pair<QByteArray, Lines> cases[] = {
        {withProperty("\"x\":\"" + times(3, MEGABYTE) + "\",\"y\":\"" + times(2, MEGABYTE) + '"'),
         {"feature 1: too large"}},
        {withProperty("\"x\":\"" + times(5, MEGABYTE) + '"'), {"feature 1: too large"}},
        {collection("[" + times(3 * 1024 * 1024, "1,") + "1]," + FEATURE), {"feature 1: too large", "feature 2: " + A}},
        {FEATURE + times(3, MEGABYTE).replace('x', ' ') + FEATURE, {"feature 1: " + A, "feature 2: " + A}},
        {FEATURE + times(5, MEGABYTE).replace('x', ' ') + FEATURE, {"feature 1: " + A, "feature 2: " + A}},
        {withProperty("\"records\":[{\"properties\":{" + times(1000, "\"k\":1,") + "\"k\":1}}]"),
         {"feature 1: a list of more than 1000 members"}},
        {withProperty(times(1000, "\"k\":1,") + "\"k\":1"), {"feature 1: a list of more than 1000 members"}},
        {withProperty("\"tags\":[" + times(1000, "\"t\",") + "\"t\"]"),
         {"feature 1: a list of more than 1000 members"}},
        {collection(times(1000, "[") + times(1000, "]") + "," + FEATURE),
         {"feature 1: nested too deep", "feature 2: " + A}},
        {collection(FEATURE + "," + times(20000, "[")), {"feature 1: " + A, "at byte 10107: nested too deep"}},
        {withProperty("\"x\":\"\xFF\""), {"at byte 0: not JSON: Invalid encoding in string."}},
        {"", {}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("geojson", bytes), gives);
}

TEST(GeoJsonReader, LosesOnlyAFaultyMember)
{
    const std::pair<QByteArray, const char *> cases[] = {
        {withProperty("\"x\":\"" + times(5, MEGABYTE) + '"'), "too large"},
        {withProperty("\"x\":" + times(100, "[") + times(100, "]")), "nested too deep"},
        {QByteArray(FEATURE).replace("[2,1]", "[2,01]"), "not JSON: Missing a comma or ']' after an array element."},
        {withProperty("\"x\":\"\xFF\""), "not JSON: Invalid encoding in string."},
        {withProperty("\"x\":\"\\ud800\""), "not JSON: The surrogate pair in string is invalid."},
        {withProperty(QByteArray("\"x\":\"A\0\"", 8)), "not JSON: Missing a closing quotation mark in string."},
        {"17", "not a feature"},
    };
    for (const auto &[faulty, problem] : cases) {
        const Lines expected = {"feature 1: " + A, std::string("feature 2: ") + problem, "feature 3: " + A};
        EXPECT_EQ(read("geojson", "{\"features\":[" + FEATURE + ',' + faulty + " , " + FEATURE + "]}"), expected);
        EXPECT_EQ(read("geojson", FEATURE + '\n' + faulty + "\r\n" + FEATURE), expected) << "a line each";
        EXPECT_EQ(read("geojson", '\x1E' + FEATURE + "\n\x1E" + faulty + "\n\x1E" + FEATURE + '\n'), expected)
            << "a text sequence";
    }
    EXPECT_EQ(read("geojson", '\x1E' + FEATURE.chopped(9) + "\n\x1E" + FEATURE),
              (Lines{"feature 1: not JSON: it ends in the middle of a value", "feature 2: " + A}));
}

TEST(CsvReader, ReadsRowsUnderHeadings)
{
    expectAll(QStringLiteral("csv"));
    const std::pair<QByteArray, Lines> cases[] = {
        {"\xEF\xBB\xBFName;LAT;lng;tags;CountryCode;floor;odd\r\n\"A;\"\"B\"\"\nC\";1.5;2;\"x; y\";CH;3;+\r\n",
         {R"(row 2: {"geometry":{"coordinates":[2.0,1.5]},"properties":{"name":"A;\"B\"\nC","countryCode":"CH",)"
          R"("floor":3,"tags":["x","y"],"odd":"+"}})",
          "note: semicolons; columns: latitude from LAT, longitude from lng; others kept: odd"}},
        {"name,lat,lon\nA,1,2\nA,1\nA,north,2\n\xFF,1,2\nA" + QByteArray(1, '\0') + ",1,2\nA,1,2\n",
         {"row 2: " + A, "row 3: 2 fields instead of 3", "row 4: latitude \"north\" is not a number",
          R"(row 5: {"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"ÿ"}})",
          "row 6: a null character in name", "row 7: " + A, HEADINGS, "note: not UTF-8; read as Windows-1252"}},
        {"name,lat,lon\n\xC3\xA9,1,2\n\xFF,1,2\n",
         {R"(row 2: {"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"é"}})", "row 3: name is not UTF-8",
          HEADINGS}},
        {QByteArray("\xFF\xFEn\0a\0m\0e\0\t\0l\0a\0t\0\t\0l\0o\0n\0\r\0\n\0\xE9\0\t\0001\0\t\0002\0", 40),
         {R"(row 2: {"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"é"}})",
          "note: tabs, UTF-16; columns: latitude from lat, longitude from lon"}},
        {times(1000, "name,") + "name\n", {"not CSV: more than 1000 columns"}},
        {"", {"not CSV: the row with the names of the columns is missing"}},
        {"name,\xFF,\xC3\xA9\nA,1,2\n",
         {"row 2: it has neither a position nor an address", "note: not UTF-8; read as Windows-1252",
          "note: commas; others kept: ÿ, Ã©"}},
        {"name,\xC3\xA9,\xFF\nA,1,2\n", {"not CSV: the first row is not UTF-8"}},
        {"name,lat,lon\n" + times(5, MEGABYTE) + ",1,2\nA,1,2\n",
         {"row 2: the row has more than 4194304 bytes", "row 3: " + A, HEADINGS}},
        {"name,lat,lon\n" + times(5, MEGABYTE + ",") + "1\nA,1,2\n",
         {"row 2: the row has more than 4194304 bytes", "row 3: " + A, HEADINGS}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("csv", bytes), gives);
    EXPECT_EQ(read("csv", times(998, "x,") + "name,lat\n" + times(998, ",") + "A,1\n")[0],
              "row 2: the longitude is empty or missing");
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
    expectAll(QStringLiteral("gpx"));
    expectAll(QStringLiteral("kml"));
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

TEST(VCardReader, ReadsEachAddressOfACardAsAPlaceAndSaysWhatIsWrong)
{
    NEEDS_VCARDS();
    expectAll(QStringLiteral("vcard"));
    const auto card = [](const QByteArray &more) {
        return "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:A\r\nGEO:geo:1,2\r\n" + more + "\r\nEND:VCARD\r\n";
    };
    QByteArray tags = "CATEGORIES:t";
    for (int i = 0; i < 1000; ++i)
        tags += ",t" + QByteArray::number(i);
    const std::pair<QByteArray, Lines> cases[] = {
        {card(tags), {"card 1, line 1: a list of more than 1000 members"}},
        {card("NOTE:\xFF"), {"card 1, line 1: it is not UTF-8"}},
        {card("NOTE:" + times(20000, "x")),
         {"card 1, line 1: " + A + " without: 1 lines are too long or too many for a card"}},
        {card("X-VELA-PLACE:" + times(100000, "[")),
         {"card 1, line 1: " + A + " without: its X-VELA-PLACE is not a feature of a place"}},
    };
    for (const auto &[bytes, gives] : cases)
        EXPECT_EQ(read("vcard", bytes), gives);
}

TEST(DocumentReader, ReadsALineForEachPlace)
{
    const auto with = [](const QByteArray &more) { return DOCUMENT.chopped(1) + "," + more + "}"; };
    expectAll(QStringLiteral("json"));
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
    expectAll(QStringLiteral("link"));
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
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("in"));
    for (const auto &[format, bytes] : cases) {
        files::write(path, bytes);
        formats::Input input(path);
        int members = 0;
        const auto stop = [&members](const formats::ReadPlace &) { return ++members, false; };
        EXPECT_EQ(formats::formatByName(QLatin1String(format))->read(input, {}, stop), QString()) << format;
        EXPECT_EQ(members, 1) << format;
    }
}

TEST(Formats, AreDetectedByNameAndByContent)
{
    const std::pair<const char *, const char *> contents[] = {
        {" <?xml?><kml>", "kml"},
        {"<gpx>", "gpx"},
        {"{\"features\" : [", "geojson"},
        {"{\"type\":\"Feature\"", "geojson"},
        {"\x1E{\"type\":\"Feature\"", "geojson"},
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
    const QTemporaryDir folder;
    for (const auto &[name, format] : paths) {
        const formats::Format *found = formats::formatByPath(QLatin1String(name));
        EXPECT_STREQ(found ? found->name : nullptr, format) << name;
        const QString path = folder.filePath(QLatin1String(name));
        files::write(path, DOCUMENT);
        const bool isJson = !format || strstr(format, "json") != nullptr;
        EXPECT_STREQ(formats::formatOf(formats::Input(path)).name, isJson ? "json" : format) << name;
    }
    EXPECT_EQ(formats::formatByName(QStringLiteral("tsv")), nullptr);
    EXPECT_EQ(formats::formatNames(true).join(QLatin1Char(' ')),
              QStringLiteral("geojson json gpx kml csv vcard kmz json-latin1"));
}
