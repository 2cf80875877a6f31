// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Files.h"
#include "support/FormatFile.h"

#include <places/Place.h>

#include <utility>

using vela::platform::places::Place;

TEST(TextFormatsTest, EveryPlaceIsRestoredFromItsFile)
{
    const QByteArray features = files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/demanding.geojsonl"));
    for (const char *format : {"gpx", "kml", "kmz", "csv"}) {
        for (const QByteArray &feature : features.trimmed().split('\n')) {
            const auto place = placeOf(feature);
            const FormatFile read = readFile(format, writeFile(format, {place.get()}));
            ASSERT_EQ(read.members.size(), 1U) << format;
            ASSERT_TRUE(read.members[0].place) << read.members[0].problem.toStdString();
            EXPECT_EQ(featureOf(*read.members[0].place), featureOf(*place)) << format;
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
        EXPECT_EQ(featureOf(*read.members.at(0).place),
                  R"({"geometry":{"coordinates":[2.0,1.0]},"properties":{"name":"New","tags":["b","c"],"kind":7}})")
            << format << bytes.constData();
    }
}

TEST(TextFormatsTest, ElementsComeInTheOrderOfTheSchema)
{
    const QByteArray start = R"({"type":"Feature","geometry":{"type":"Point","coordinates":[180,1,3]},"id":"n",)";
    const auto full = placeOf(
        start
        + R"("properties":{"name":"A","description":"d","label":"l","phone":"1","url":"http://a.example/",)"
          R"("time":"2026-02-28T00:00:00Z","magvar":"1.5","cmt":"c","src":"s","sym":"y","kind":"k","fix":"2d","sat":"4",)"
          R"("hdop":"1","vdop":"1","pdop":"1","ageofdgpsdata":"1","dgpsid":"1","geoidheight":"1","tags":["t"]}})");
    const auto bare = placeOf(start + R"("properties":{"name":"B"}})");
    const auto nowhere = placeOf(R"({"type":"Feature","geometry":null,"properties":{"name":"C","city":"c"}})");
    const struct
    {
        const char *format;
        const char *elements;
        std::vector<const Place *> places;
    } cases[] = {
        {"gpx",
         "wpt ele time magvar name cmt desc src link sym type fix sat hdop vdop pdop ageofdgpsdata dgpsid extensions",
         {full.get()}},
        {"kml", "Folder name>t Placemark name>A address phoneNumber description ExtendedData Point", {full.get()}},
        {"kml", "Document Placemark Folder", {full.get(), bare.get()}},
    };
    for (const auto &row : cases) {
        const QByteArray bytes = writeFile(row.format, row.places);
        QByteArray::size_type position = -1;
        for (const QByteArray &element : QByteArray(row.elements).split(' ')) {
            const auto last = std::exchange(position, bytes.indexOf('<' + element));
            EXPECT_GT(position, last) << element.constData() << bytes.constData();
        }
    }
    for (const char *format : {"gpx", "kml"}) {
        const QByteArray bytes = writeFile(format, {full.get(), bare.get(), nowhere.get(), full.get()});
        const bool isKml = format == QByteArray("kml");
        EXPECT_EQ(bytes.count(" id=\"n\""), isKml ? 1 : 0) << "an id is unique in a file";
        const FormatFile read = readFile(format, bytes);
        EXPECT_EQ(read.members.size(), isKml ? 4U : 3U);
        EXPECT_EQ(read.problem, QString());
    }
}
