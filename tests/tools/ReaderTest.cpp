// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ExactJson.h"
#include "Feature.h"
#include "Formats.h"
#include "GeoJsonWriter.h"
#include "Input.h"
#include "PlaceLink.h"
#include "support/Files.h"

#include <places/Place.h>

#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>

namespace
{

using geojson::ReadPlace;
using vela::platform::places::Place;

QByteArray times(int count, const QByteArray &bytes)
{
    return bytes.repeated(count);
}

/// The feature that a place is exported as, without what is said of every new place.
std::string featureOf(const Place &place)
{
    QByteArray text = tool::toGeoJsonFeature(place);
    for (const char *usual : {R"("type":"Feature",)", R"("type":"Point",)", R"(,"favorite":false)",
                              R"(,"lastUsedTime":0)", R"(,"tags":[])", R"(,"aliases":[])", R"(,"private":false)",
                              R"(,"records":[])", R"(,"usageCount":0,"creationTime":0,"updateTime":0)"})
        text.replace(usual, "");
    return text.toStdString();
}

/// What a format makes of a file: each member as the feature that it is exported as, or why it is no place; then what
/// is wrong with the file.
std::vector<std::string> read(const char *format, const QByteArray &bytes, int most = 1000)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("in"));
    files::write(path, bytes);
    geojson::Input input(path);
    std::vector<std::string> lines;
    const QString problem = tool::formatByName(QLatin1String(format))->read(input, [&](const ReadPlace &member) {
        lines.push_back((member.where + QStringLiteral(": ") + member.problem).toStdString());
        if (!member.place)
            return --most > 0;
        lines.back() += featureOf(*member.place);
        geojson::ExactDocument exported;
        Place again;
        EXPECT_FALSE(exported.read(tool::toGeoJsonFeature(*member.place).constData()).IsError());
        EXPECT_EQ(geojson::readFeature(exported, again), QString());
        EXPECT_EQ(featureOf(again), featureOf(*member.place)) << "what was exported, imported and exported again";
        return --most > 0;
    });
    if (!problem.isEmpty())
        lines.push_back(problem.toStdString());
    return lines;
}

struct Case
{
    QByteArray bytes;
    std::vector<std::string> gives;
};

void expectAll(const char *format, const std::vector<Case> &cases)
{
    for (const Case &row : cases)
        EXPECT_EQ(read(format, row.bytes), row.gives) << row.bytes.left(200).constData();
}

/// A feature at a point, with these properties beside its name and these members beside its own.
QByteArray feature(const QByteArray &properties = {}, const QByteArray &members = {})
{
    return R"({"type":"Feature",)" + members + R"("geometry":{"type":"Point","coordinates":[7.4,46.9,540.5]},)"
           + R"("properties":{"name":"Bern")" + properties + "}}";
}

/// What such a feature gives.
std::string bern(const std::string &properties = {}, const std::string &members = {})
{
    return "{" + members + R"("geometry":{"coordinates":[7.4,46.9,540.5]},"properties":{"name":"Bern")" + properties
           + "}}";
}

/// What a place A at 1 degree north and 2 degrees east gives.
const std::string A = R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"A"}})";

QByteArray collection(const QByteArray &features)
{
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

} // namespace

TEST(GeoJsonReader, GivesEveryPropertyItsMember)
{
    const QByteArray hidden = R"(,"records":[{"type":"geojson.feature","properties":{"geometry":"null","x":"no JSON",)"
                              R"("type":"\"Topology\"","bbox":"[1,2,3,4]"}},{"type":"geojson.properties","properties":)"
                              R"({"name":"\"other\"","floor":"3","y":"2","z":")";
    const struct
    {
        QByteArray properties;
        const char *gives = nullptr; ///< Null for the same.
        const char *members = "";
        const char *givenMembers = nullptr;
    } cases[] = {
        // Texts, numbers, lists; and what is none of its kind, which stays as it is.
        {R"(,"description":"d","label":"l","room":"r","building":"b","campus":"ca","houseNumber":"h","street":"s",)"
         R"("city":"ci","region":"re","country":"co","countryCode":"cc","countryCode3":"ccc","postalCode":"p",)"
         R"("source":"so")"},
        {R"(,"phone":"ph","email":"e","url":"http://u.example/%C3%A9%20")",
         R"(,"phone":"ph","email":"e","url":"http://u.example/%C3%A9%20","records":[{"type":"poi","properties":)"
         R"({"emailAddress":"e","phoneNumber":"ph","url":"http://u.example/é "}}])"},
        {R"(,"floor":-2,"horizontalAccuracy":2.5,"verticalAccuracy":"3.5","favorite":"TRUE","private":true)",
         R"(,"floor":-2,"horizontalAccuracy":2.5,"verticalAccuracy":3.5,"favorite":true,"tags":["lbs-favorite"],)"
         R"("private":true)",
         R"("bbox":[7,46,8,47],)", R"("bbox":[7.0,46.0,8.0,47.0],)"},
        {R"(,"expiryTime":-1,"floor":2.5,"horizontalAccuracy":-1,"private":"yes","verticalAccuracy":1e39,)"
         R"("virtualDataType":2147483648)",
         nullptr, R"("bbox":[7,46,8],)"},
        {R"(,"floor":2147483647,"horizontalAccuracy":0.0,"verticalAccuracy":9007199254740992.0,"virtualData":"v",)"
         R"("virtualDataType":-2147483648,"expiryTime":18446744073709500416)",
         nullptr, R"("bbox":[7.0,46.0,1.0,8.0,47.0,2.0],)"},
        {R"(,"compactAddressLines":["1","2"],"extendedAddressLines":["3"],"tags":["a",1,"a"],"aliases":["x",2.5])",
         R"(,"compactAddressLines":["1","2"],"extendedAddressLines":["3"],"tags":["a","1"],"aliases":["x","2.5"])"},
        {R"(,"aliases":"x","otherLocations":[1],"records":[[]],"tags":["a",true])"},
        {R"(,"tags":["lbs-my-home"],"aliases":[])", R"(,"tags":["lbs-my-home"])"},
        // The properties of the sample data.
        {R"(,"iata":"BRN","icao":"LSZB","kind":"small_airport")",
         R"(,"tags":["small_airport","lbs-airport"],"aliases":["BRN","LSZB"],"records":[{"type":"poi",)"
         R"("externalId":"17","properties":{"category":"small_airport"}}],"iata":"BRN","icao":"LSZB",)"
         R"("kind":"small_airport")",
         R"("id":17,)"},
        {R"(,"kind":"city")", R"(,"city":"Bern","tags":["city"],"records":[{"type":"poi","properties":)"
                              R"({"category":"city"}}],"kind":"city")"},
        {R"(,"city":"x","kind":"city")", R"(,"city":"x","tags":["city"],"records":[{"type":"poi","properties":)"
                                         R"({"category":"city"}}],"kind":"city")"},
        {R"(,"tags":[],"kind":"city")", R"(,"kind":"city")", R"("id":"i",)"},
        // Further locations and records.
        {R"(,"locationIndex":1,"otherLocations":[{"virtualData":"v"},{"coordinates":[1.0,2.0],)"
         R"("bbox":[0.0,1.0,2.0,3.0],"street":"t"}])"},
        {R"(,"locationIndex":9,"otherLocations":[{"city":"c"}])",
         R"(,"locationIndex":1,"otherLocations":[{"city":"c"}])"},
        {R"(,"phone":"2","url":"http://b.example/","records":[{"type":"own","externalId":"e","properties":{"a":true,)"
         R"("b":[]}},{"type":"poi","properties":{"phoneNumber":"1","rating":"4"}}])",
         R"(,"phone":"2","url":"http://b.example/","records":[{"type":"own","externalId":"e","properties":{"a":"true",)"
         R"("b":""}},{"type":"poi","properties":{"phoneNumber":"2","rating":"4","url":"http://b.example/"}}])"},
        {R"(,"phone":"1","records":[{"type":"contact","properties":{"homePhone":"1"}}])"},
        // What is not known, and stored records that would write over the members of the feature or nest too deep.
        {R"(,"big":9007199254740993,"nested":{"a":[1,{"b":null}]},"owner":"o","text":"\u05e9\n","usageCount":"u",)"
         R"("zero":0e55)",
         R"(,"big":9007199254740993,"nested":{"a":[1,{"b":null}]},"text":"ש\n","zero":0.0)",
         R"("vendor":{"x":[1.5]},"bbox":null,)", R"("vendor":{"x":[1.5]},)"},
        {hidden + times(80, "[") + times(80, "]") + "\"}}]", nullptr, "", R"("x":"no JSON",)"},
    };
    for (const auto &row : cases) {
        const std::string given = row.properties.toStdString();
        std::string gives = row.gives ? row.gives : given;
        if (row.properties.startsWith(hidden))
            gives = ",\"y\":2,\"z\":\"" + given.substr(std::string(hidden).size(), 160) + "\"";
        EXPECT_EQ(read("geojson", feature(row.properties, row.members)),
                  std::vector{"feature 1: " + bern(gives, row.givenMembers ? row.givenMembers : row.members)});
    }
}

TEST(GeoJsonReader, TakesOneTextAfterTheOtherAndNamesWhatIsNoPlace)
{
    const QByteArray good = feature();
    const std::string isBern = "feature 1: " + bern();
    const QByteArray megabyte = times(1024 * 1024, "x");
    const auto with = [&](const char *from, const char *to) { return QByteArray(good).replace(from, to); };
    expectAll(
        "geojson",
        {
            {collection(good + "," + good).chopped(40),
             {isBern, "not JSON at byte 215: Missing a comma or ']' after an array element."}},
            {good + "\n" + feature(",\"x\":" + times(100, "[") + times(100, "]")) + "\n{\"x\":1}\n[3]" + good,
             {isBern, "feature 2: nested too deep", "feature 3: not a feature", "feature 4: not a feature",
              "feature 5: " + bern()}},
            {"{\"x\":1}" + good, {"neither a GeoJSON FeatureCollection nor a Feature at byte 0"}},
            {collection(good).replace("FeatureCollection", "Topology"),
             {"neither a GeoJSON FeatureCollection nor a Feature at byte 0"}},
            {"{\"features\":[" + good + "],\"x\":[{}],\"type\":\"Topology\"}",
             {isBern, "neither a GeoJSON FeatureCollection nor a Feature at byte 0"}},
            {"{\"x\":[{}],\"features\":[" + good + "],\"y\":[{}],\"type\":\"FeatureCollection\"}", {isBern}},
            {feature(R"(,"x":")" + times(3, megabyte) + R"(","y":")" + times(2, megabyte) + '"'),
             {"feature 1: too large"}},
            {feature(R"(,"x":")" + times(5, megabyte) + '"'), {"a text or number is too large at byte 4198400"}},
            {collection("[" + times(3 * 1024 * 1024, "1,") + "1]," + good),
             {"feature 1: too large", "feature 2: " + bern()}},
            {feature(",\"tags\":[" + times(1000, "\"t\",") + "\"t\"]")
                 + feature(",\"x\":[" + times(1000, "1,") + "1],\"tags\":[" + times(999, "\"t\",") + "\"t\"]")
                       .replace("Bern", " \\t"),
             {"feature 1: a list of more than 1000 members", "feature 2: no name"}},
            {collection(with("Feature", "NotFeature") + ",7"),
             {"feature 1: not a feature", "feature 2: not a feature"}},
            {collection(good + "," + times(1000, "[") + times(1000, "]") + "," + good),
             {isBern, "feature 2: nested too deep", "feature 3: " + bern()}},
            {collection(good + "," + times(20000, "[")), {isBern, "nested too deep at byte 10145"}},
            {collection(with("7.4", "187.4") + "," + with("Point", "Line") + "," + with("46.9", "\"46.9\"")),
             {"feature 1: no point on the Earth", "feature 2: no point on the Earth",
              "feature 3: no point on the Earth"}},
            {collection(with("7.4", "1e308") + "," + feature(",\"x\":1" + times(400, "0"))),
             {"feature 1: no point on the Earth", "not JSON at byte 258: Number too big to be stored in double."}},
            {with("Bern", "\xFF"), {"not JSON at byte 99: Invalid encoding in string."}},
            {collection(feature(R"(,"otherLocations":[{}])")), {"feature 1: a location that is nowhere"}},
            {R"({"type":"Feature","geometry":null,"properties":{"name":7,"name":"no position","city":"Bern"}})",
             {R"(feature 1: {"geometry":null,"properties":{"name":"no position","city":"Bern"}})"}},
            {"\xEF\xBB\xBF" + good, {isBern}},
            {"", {"not JSON at byte 0: The document is empty."}},
        });
}

TEST(CsvReader, ReadsRowsUnderHeadings)
{
    const auto at = [](const char *position, const std::string &properties) {
        return R"(row 2: {"geometry":{"coordinates":[)" + std::string(position) + R"(]},"properties":{"name":")"
               + properties + "}}";
    };
    const QByteArray megabyte = times(1024 * 1024, "x");
    expectAll(
        "csv",
        {
            {"name,lat,lon,tags;x\nA,1,2,t\n", {at("2.0,1.0", R"(A","tags;x":"t")")}},
            {"\xEF\xBB\xBFName;LAT;lng;tags;CountryCode;floor;odd\r\n\"A;\"\"B\"\"\nC\";1.5;2;\"x; y\";CH;3;+\r\n",
             {at("2.0,1.5", R"(A;\"B\"\nC","countryCode":"CH","floor":3,"tags":["x","y"],"odd":"+")")}},
            {"name\tlat\tlon\tfavorite\tcompactAddressLines\tname\nA\t1\t2\tTRUE\tx; y\tB\n",
             {at("2.0,1.0", R"(A","compactAddressLines":["x","y"],"favorite":true,"tags":["lbs-favorite"])")}},
            {"Title,Latitude,long,elevation\nA,1,2,3\n", {at("2.0,1.0,3.0", R"(A")")}},
            {"title,lat,longitude,ele\nA,1,2,3", {at("2.0,1.0,3.0", R"(A")")}},
            {"title,lat,Lon,alt\nA,1,2,x\nA,1,2,\nC,,,\nD,1,,",
             {"row 2: the altitude is no number", "row 3: " + A, "row 4: no point on the Earth",
              "row 5: no point on the Earth"}},
            {"\"name,a;;;\",name,lat,lon\nx,A,1,2\n", {at("2.0,1.0", R"(A","name,a;;;":"x")")}},
            {"name,lat,lon\nA,1,2\nA,1\nA,north,2\n\xFF,1,2\nA" + QByteArray(1, '\0') + ",1,2\nA,1,2\n",
             {"row 2: " + A, "row 3: 2 fields in place of 3", "row 4: no point on the Earth",
              "row 5: name is not UTF-8", "row 6: a null character in name", "row 7: " + A}},
            {"name,lat,lon\nA,1,2\n\"A,1,2\n", {"row 2: " + A, "not CSV in row 3: a quotation mark out of place"}},
            {"name,lat,lon\nA\"B,1,2\n", {"not CSV in row 2: a quotation mark out of place"}},
            {times(1000, "name,") + "name\n", {"not CSV: more than 1000 columns"}},
            {times(998, "x,") + "name,lat\n" + times(998, ",") + "A,1\n", {"row 2: no point on the Earth"}},
            {"", {"not CSV: there is no row that names the columns"}},
            {"lat,lon\n1,2\n", {"not CSV with a row of headings: no column is called name; add one"}},
            {"name,\xFF\n1,2\n", {"not CSV: the first row is not UTF-8"}},
            {"name,lat,lon\n" + times(5, megabyte) + ",1,2\nA,1,2\n", {"not CSV in row 2: a field is too large"}},
            {"name,lat,lon\n" + times(5, megabyte + ",") + "1\nA,1,2\n",
             {"row 2: more than the 4194304 bytes that a row may have", "row 3: " + A}},
        });
}

TEST(XmlReader, ReadsWaypoints)
{
    const QByteArray point = R"(<wpt lat="1" lon="2"><name>A</name></wpt>)";
    const int large = 5 * 1024 * 1024;
    const auto attributes = [](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += " a" + QByteArray::number(i) + "='1'";
        return text;
    };
    const std::string isA = "waypoint 1, line 1: " + A;
    expectAll(
        "gpx",
        {
            {R"(<?xml version="1.0"?><gpx xmlns="g" xmlns:o="o"><metadata><name>x</name></metadata>
<o:wpt lat="0" lon="0"><name>no</name></o:wpt><wpt o:lat="9" lat="1.5" lon="-2"><o:name>ext</o:name><ele>10</ele>
<geoidheight>2.5</geoidheight><name>A &amp;<o:b>no</o:b> B</name><desc>d</desc><type>summit</type>
<link href="http://a.example/"><text>no</text></link><sym>Flag</sym><extensions><name>no</name></extensions></wpt>
<rte><rtept lat="0" lon="0"><name>no</name></rtept></rte></gpx>)",
             {R"(waypoint 1, line 2: {"geometry":{"coordinates":[-2.0,1.5,12.5]},"properties":{"name":"A & B",)"
              R"("description":"d","url":"http://a.example/","tags":["summit"],"records":[{"type":"poi",)"
              R"("properties":{"category":"summit","url":"http://a.example/"}}],"kind":"summit","sym":"Flag"}})"}},
            {"<gpx>" + point + R"(<wpt lat="91" lon="2"><name>B</name></wpt>)" + "\n" + point + "</gpx>",
             {isA, "waypoint 2, line 1: no point on the Earth", "waypoint 3, line 2: " + A}},
            {"<gpx>" + QByteArray(point).replace("</wpt>", "<ele>high</ele></wpt>") + "</gpx>",
             {"waypoint 1, line 1: the altitude is no number"}},
            {"<gpx>" + point + "\n<wpt lat=\"1\" lon=\"2\"><name>cut",
             {isA, "not XML in line 2: Premature end of document."}},
            {"<!DOCTYPE gpx [<!ENTITY a \"aaaa\">]><gpx>" + point + "</gpx>",
             {"a document type is not accepted in line 1"}},
            {"<gpx><wpt lat=\"1\" lon=\"2\">" + times(large / 10, "<name>xxxxxxxxxx</name>") + "</wpt>" + point
                 + "</gpx>",
             {"waypoint 1, line 1: too large", "waypoint 2, line 1: " + A}},
            {"<gpx>" + QByteArray(point).replace("A", QByteArray(1, '\0')) + "</gpx>",
             {"not XML in line 1: Unexpected ''."}},
            {"<gpx>" + point + "<x" + attributes(100) + "/><x" + attributes(101) + "/></gpx>",
             {isA, "a tag has too many attributes in line 1"}},
            {"<gpx>" + point + "<x" + attributes(20000) + "/></gpx>", {isA, "a text or tag is too large in line 1"}},
            {"<gpx>" + times(62, "<x>") + "<y/>" + times(62, "</x>") + point + times(64, "<x>"),
             {isA, "nested too deep in line 1"}},
            {"<gpx>" + times(large, "x") + "</gpx>", {"a text or tag is too large in line 1"}},
            {"<html/>", {"another kind of document in line 1"}},
        });
}

TEST(XmlReader, ReadsPlacemarks)
{
    const QByteArray start = "<kml><Placemark><name>A</name>";
    expectAll("kml",
              {
                  {start + R"(<description><![CDATA[<b>d</b>]]></description><address>Quai 1</address>
<phoneNumber>1</phoneNumber>
<ExtendedData><Data name="city"><value>Bern</value></Data><Data name="none"/><Data><value>nameless</value></Data>
<SchemaData><SimpleData name="odd">é</SimpleData></SchemaData></ExtendedData>
<Point><altitudeMode>absolute</altitudeMode><coordinates> 2,1.5,7 </coordinates></Point></Placemark></kml>)",
                   {R"(placemark 1, line 1: {"geometry":{"coordinates":[2.0,1.5,7.0]},"properties":{"name":"A",)"
                    R"("description":"<b>d</b>","label":"Quai 1","city":"Bern","phone":"1","records":[{"type":"poi",)"
                    R"("properties":{"phoneNumber":"1"}}],"odd":"é"}})"}},
                  {start + "<Point><coordinates>2,1,7</coordinates></Point></Placemark></kml>",
                   {"placemark 1, line 1: " + A}},
                  {start + "<LineString/></Placemark></kml>", {"placemark 1, line 1: no point on the Earth"}},
              });
}

TEST(DocumentReader, ReadsALineForEachPlace)
{
    const QByteArray document =
        R"({"complete":true,"name":"A","location":{"coordinates":{"latitude":1,"longitude":2}}})";
    const auto with = [&](const char *from, const QByteArray &to) { return QByteArray(document).replace(from, to); };
    expectAll("json",
              {
                  {R"({"complete":true,"id":9,"name":"A\u00e9","description":"d","restricted":true,"expiryTime":7,)"
                   R"("usageCount":3,"tags":["t"],"location":{"id":3,"address":{"city":"c"},"coordinates":)"
                   R"({"latitude":1,"longitude":2,"altitude":3}},"contents":[{"id":4,"type":"poi","externalId":"x",)"
                   R"("data":{"k":"v"}},{"type":"no","persistable":false}]})",
                   {R"(line 1: {"geometry":{"coordinates":[2.0,1.0,3.0]},"properties":{"name":"Aé","description":"d",)"
                    R"("city":"c","tags":["t"],"private":true,"expiryTime":7,"records":[{"type":"poi",)"
                    R"("externalId":"x","properties":{"k":"v"}}]}})"}},
                  {document + "\n" + document.chopped(3) + "\n \n" + document,
                   {"line 1: " + A, "line 2: not JSON at byte 81: Missing a comma or '}' after an object member.",
                    "line 4: " + A}},
                  {times(5 * 1024 * 1024, "x") + "\n" + document + "\n",
                   {"line 1: more than the 4194304 bytes that a line may have", "line 2: " + A}},
                  {with("}}}", "}},\"tags\":[" + times(1000, "\"t\",") + "1]}") + "\n"
                       + with("}}}", "}},\"x\":[" + times(999, "1,") + "1]}"),
                   {"line 1: a list of more than 1000 members", "line 2: " + A}},
                  {document + QByteArray(1, '\0') + "\n{}\n7",
                   {"line 1: The document is not JSON: it has a null character in it.",
                    "line 2: The document is not that of a place: it has no \"complete\" that is true or false.",
                    "line 3: The document is not a JSON object."}},
                  {with(":1,", ":91,") + "\n" + with("itude", "") + "\n" + with("longitude", "x"),
                   {"line 1: a position that is no point on the Earth", "line 2: a place without position and address",
                    "line 3: a position that is no point on the Earth"}},
              });
    const std::vector<std::string> lines = read("json", times(20, times(5000, " ") + document + "\n") + "x");
    ASSERT_EQ(lines.size(), 21U) << "more than a buffer of the input";
    EXPECT_EQ(lines[19], "line 20: " + A);
}

TEST(Formats, EndWhenNoMorePlacesAreWanted)
{
    const QByteArray point = R"(<wpt lat="1" lon="2"><name>A</name></wpt>)";
    const std::pair<const char *, QByteArray> cases[] = {
        {"geojson", feature() + feature() + "x"},
        {"csv", "name,lat,lon\nA,1,2\nA,1,2\n\""},
        {"gpx", "<gpx>" + point + point + "<"},
        {"json", "1\n2\n"},
    };
    for (const auto &[format, bytes] : cases)
        EXPECT_EQ(read(format, bytes, 1).size(), 1U) << format;
}

TEST(Formats, AreToldByNameAndByContent)
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
        EXPECT_STREQ(tool::formatByContent(head).name, format) << head;
    const std::pair<const char *, const char *> paths[] = {
        {"a.GEOJSON", "geojson"}, {"a.geojsonl", "geojson"}, {"a.ndjson", "json"}, {"a.tsv", "csv"},
        {"a.kml", "kml"},         {"a.json", nullptr},       {"a", nullptr},       {"geojson", nullptr},
    };
    for (const auto &[path, format] : paths) {
        const tool::Format *found = tool::formatByPath(QLatin1String(path));
        EXPECT_STREQ(found ? found->name : nullptr, format) << path;
    }
    EXPECT_EQ(tool::formatByName(QStringLiteral("tsv")), nullptr);
    EXPECT_EQ(tool::formatNames(true), (QStringList{QStringLiteral("geojson"), QStringLiteral("json")}));
    EXPECT_EQ(tool::formatNames(false).size(), 5);
}

TEST(PlaceLink, LeadsToAPlace)
{
    const std::pair<const char *, const char *> cases[] = {
        {"geo:48.2010,16.3695,183",
         R"({"geometry":{"coordinates":[16.3695,48.201,183.0]},"properties":{"favorite":false,)"
         R"("source":"lbs-geolink"}})"},
        {"GEO:-1,-2;CRS=WGS84;U=6.50;x=%2d#f",
         R"({"geometry":{"coordinates":[-2.0,-1.0]},"properties":{"horizontalAccuracy":6.5,)"
         R"("source":"lbs-geolink"}})"},
        {"geo:0,0?z=3&q=34.5,-106.5(A+%26+B%2B)",
         R"({"geometry":{"coordinates":[-106.5,34.5]},"properties":{"name":"A & B+",)"
         R"("source":"lbs-geolink"}})"},
        {"geo:0,0?q=Main+St+1", R"({"geometry":null,"properties":{"label":"Main St 1","source":"lbs-geolink"}})"},
        {"geo:0,1?Q=Main+St", R"({"geometry":{"coordinates":[1.0,0.0]},"properties":{"name":"Main St",)"
                              R"("source":"lbs-geolink"}})"},
        {"geo:1,0?q=%201,-2%20", R"({"geometry":{"coordinates":[-2.0,1.0]},"properties":{"favorite":false,)"
                                 R"("source":"lbs-geolink"}})"},
        {"geo:0,0", R"({"geometry":{"coordinates":[0.0,0.0]},"properties":{"favorite":false,)"
                    R"("source":"lbs-geolink"}})"},
        {"https://m.example/?lat=1&lon=2&label=100%&city=Bern",
         R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"100%","city":"Bern",)"
         R"("source":"lbs-geolink","records":[{"type":"poi","properties":{"emailAddress":"",)"
         R"("phoneNumber":"","url":""}}]}})"},
        {"https://m.example/?lat=1&lon=2&label=A%26B+C%2B&city=Bern",
         R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"A&B C+","city":"Bern",)"
         R"("source":"lbs-geolink","records":[{"type":"poi","properties":{"emailAddress":"",)"
         R"("phoneNumber":"","url":""}}]}})"},
        {"geo:600000,5000000;crs=epsg:32632", "the reference system epsg:32632 is not known; positions are in wgs84"},
        {"geo:1,2;crs=", "the reference system has no name"},
        {"geo:1,2;u=-1", "the uncertainty is no number of metres"},
        {"geo:1,2;u=x", "the uncertainty is no number of metres"},
        {"geo:1e1,2", "its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees"},
        {"geo:1,2,3,4", "its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees"},
        {"geo:1", "its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees"},
        {"geo:+1,2", "its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees"},
        {"geo:1,2,x", "its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees"},
        {"http://m.example/?lat=x&lon=2", "not a link of the map web service, such as places link prints"},
    };
    for (const auto &[link, gives] : cases) {
        Place place;
        const QString problem = tool::readLink(QString::fromUtf8(link), place);
        EXPECT_EQ(problem.isEmpty() ? featureOf(place) : problem.toStdString(), gives) << link;
    }
    for (const char *text : {"geo:", "HTTP://", "https://x"})
        EXPECT_TRUE(tool::isLink(QLatin1String(text))) << text;
    for (const char *text : {"", "geo", "xgeo:1,2", "ftp://x"})
        EXPECT_FALSE(tool::isLink(QLatin1String(text))) << text;
}
