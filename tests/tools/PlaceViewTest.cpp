// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceView.h"

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "LineEditor.h"
#include "Options.h"
#include "PlaceRows.h"
#include "support/Files.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceJson.h>

#include <gmock/gmock.h>

#include <clocale>
#include <ctime>

namespace
{

using namespace vela::platform::places;

std::unique_ptr<Place> placeOf(const std::string &feature)
{
    formats::ExactDocument document;
    auto place = std::make_unique<Place>();
    EXPECT_FALSE(document.read(feature.c_str()).IsError());
    EXPECT_EQ(formats::readFeature(document, *place), QString());
    return place;
}

void useUtc()
{
    ::setenv("TZ", "UTC", 1);
    ::tzset();
}

} // namespace

TEST(PlaceView, ShowsAllValuesOfAPlace)
{
    useUtc();
    const auto place =
        placeOf(files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/everything.geojson")).toStdString());
    EXPECT_EQ(tool::viewOf(*place).toStdString(),
              files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/everything.txt")).toStdString());
}

TEST(PlaceView, OmitsUnsetValues)
{
    useUtc();
    EXPECT_EQ(tool::viewOf(Place()), QString());
    const std::unique_ptr<Place> stored =
        PlaceJson::readPlace(R"({"complete":true,"id":7,"name":"A","owner":"o","usageCount":2,"lastUsedTime":60,)"
                             R"("creationTime":120,"updateTime":180,"expiryTime":240})");
    EXPECT_EQ(tool::viewOf(*stored), QStringLiteral(R"(Id            7
Name          A
Owner         o
Uses          2
Last used     1970-01-01 00:01:00 UTC
Stored        1970-01-01 00:02:00 UTC
Changed       1970-01-01 00:03:00 UTC
Expires       1970-01-01 00:04:00 UTC
)"));
}

TEST(PlaceRows, ShowHowPlacesDiffer)
{
    const auto at = [](const char *name, const char *address, double latitude, const char *more = "") {
        return placeOf(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[0,)" + std::to_string(latitude)
                       + R"(]},"properties":{"name":")" + name + R"(","label":")" + address + "\"" + more + "}}");
    };
    const std::unique_ptr<Place> list[] = {
        at("Springfield", "Springfield, Missouri, USA", 0.001, R"(,"favorite":true)"),
        at("Springfield", "Springfield, Illinois, USA", 0.05, R"(,"description":"the  other")"),
        at("Zürich Airport of the canton", "Kloten, Zürich, Zürich, USA", 10,
           R"(,"description":"a description that is longer than a name may be")"),
    };
    formats::PlaceList places;
    for (const auto &place : list)
        places.append(place.get());
    const auto rows = [&](int columns, bool hasIds, const Coordinates &centre = Coordinates()) {
        return tool::rowsOf(places, {centre, columns, hasIds}).join(QLatin1Char('\n')).toStdString();
    };
    EXPECT_EQ(rows(0, true), R"(        ★ Springfield                              Missouri, USA        0.00100, 0.00000
          Springfield (the other)                  Illinois, USA        0.05000, 0.00000
          Zürich Airport of the canton             Kloten, Zürich, USA 10.00000, 0.00000)");
    EXPECT_THAT(rows(80, true), testing::HasSubstr("Illinois, USA        0.05000, 0.00000\n"));
    EXPECT_THAT(rows(60, true), testing::Not(testing::HasSubstr("0.05000"))) << "names need the room";
    EXPECT_EQ(rows(0, false, Coordinates(0, 0)),
              R"(★ Springfield                              Missouri, USA         111 m N
  Springfield (the other)                  Illinois, USA        5.6 km N
  Zürich Airport of the canton             Kloten, Zürich, USA 1112 km N)");
    EXPECT_EQ(rows(60, false, Coordinates(0, 0)), R"(★ Springfield                     Missouri         111 m N
  Springfield (the other)         Illinois        5.6 km N
  Zürich Airport of the canton    Kloten, Zürich 1112 km N)");
    EXPECT_EQ(rows(40, false), R"(★ Springfield             Missouri
  Springfield (the other) Illinois
  Zürich Airport of the … Kloten, Zürich)");
    EXPECT_EQ(rows(20, false), R"(★ Springfi… Missouri
  Springfi… Illinois
  Zürich A… Kloten,…)");
    EXPECT_EQ(rows(5, true), R"(        ★ … …
          … …
          … …)");
    EXPECT_TRUE(tool::rowsOf({}, {}).isEmpty());
}

TEST(PlaceRows, NameTheNearestOfEightDirections)
{
    const struct
    {
        Coordinates from;
        Coordinates to;
        const char *says;
    } cases[] = {
        {{0, 0}, {1, 0}, "111 km N"},       {{0, 0}, {1, 1}, "157 km NE"},   {{0, 0}, {0, 1}, "111 km E"},
        {{0, 0}, {-1, 1}, "157 km SE"},     {{0, 0}, {-1, 0}, "111 km S"},   {{0, 0}, {-1, -1}, "157 km SW"},
        {{0, 0}, {0, -1}, "111 km W"},      {{0, 0}, {1, -1}, "157 km NW"},  {{0, 179.95}, {0, -179.95}, "11 km E"},
        {{60, 0}, {60, 100}, "5008 km NE"}, {{0, 0}, {0, 0.000001}, " 0 m"},
    };
    for (const auto &row : cases) {
        Place place;
        place.setName(QStringLiteral("A"));
        Location location;
        location.setCoordinates(row.to);
        place.addLocation(location);
        EXPECT_TRUE(tool::rowsOf({&place}, {row.from, 20, false}).first().endsWith(QLatin1String(row.says)))
            << row.says;
    }
}

TEST(PlaceRows, DistinguishTermsAndCategoriesFromPlaces)
{
    using tool::ResultKind;
    Place found;
    found.setName(QStringLiteral("food"));
    EXPECT_EQ(tool::kindOf(found), ResultKind::Term);
    found.addAuxiliaryData(AuxiliaryData(AuxiliaryData::TypePointOfInterest));
    EXPECT_EQ(tool::kindOf(found), ResultKind::Place);
    found.addTag(QStringLiteral("lbs-st-category"));
    EXPECT_EQ(tool::kindOf(found), ResultKind::Category);
    EXPECT_EQ(tool::rowsOf({&found}, {}).first().simplified(), QStringLiteral("food category"));
    Location location;
    location.setCoordinates(Coordinates(1, 2));
    found.addLocation(location);
    EXPECT_EQ(tool::kindOf(found), ResultKind::Place);
}

TEST(TerminalText, FitsItsColumnsAndHasNoControlCharacters)
{
    std::setlocale(LC_CTYPE, "C.UTF-8");
    const struct
    {
        QString text;
        int columns;
        QString in5;
    } cases[] = {
        {QStringLiteral("abcde"), 5, QStringLiteral("abcde")},
        {QStringLiteral("abcdef"), 6, QStringLiteral("abcd…")},
        {QStringLiteral("ab"), 2, QStringLiteral("ab   ")},
        {QStringLiteral("e\u0301é"), 2, QStringLiteral("e\u0301é   ")},
        {QStringLiteral("世界e\u0301世"), 7, QStringLiteral("世界…")},
        {QStringLiteral("e\u0301世界世"), 7, QStringLiteral("e\u0301世… ")},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(tool::columnsOf(row.text), row.columns);
        EXPECT_EQ(tool::cell(row.text, 5), row.in5);
    }
    for (const int steers : {0x1F, 0x7F, 0x9B, 0x61C, 0x200E, 0x200F, 0x2028, 0x202E, 0x2066, 0x2069}) {
        const QString text = QStringLiteral("a") + QChar(steers);
        EXPECT_EQ(tool::printable(text), QStringLiteral("a ")) << steers;
        EXPECT_EQ(tool::printableJson(text.toUtf8()), "a\\u" + QByteArray::number(steers, 16).rightJustified(4, '0'));
    }
    EXPECT_EQ(tool::printableJson("\t\r\n"), "\t\r\n") << "white space between tokens";
    for (const int harmless : {0x20, 0xA0, 0x200D, 0x2027, 0x202F, 0x2065, 0x206A})
        EXPECT_EQ(tool::printable(QString(QChar(harmless))), QString(QChar(harmless))) << harmless;
}

TEST(Options, AcceptOnlyValuesOfTheirKind)
{
    const struct
    {
        const CLI::Validator &validator;
        std::vector<const char *> accepted;
        std::vector<const char *> refused;
    } cases[] = {
        {tool::IsPosition, {"47.24,8.72", " -90 , 180 "}, {"", "1", "91,0", "0,x", "x,0"}},
        {tool::IsId, {"0", "010", "9223372036854775807"}, {"", "-1", "1.5", "9223372036854775808"}},
        {tool::IsIdOrPosition, {"7", "geo:1,2", "HTTPS://x"}, {"", "-1", "place"}},
        {tool::IsLength, {"0", "500m", "2.5 km"}, {"", "-1", "far"}},
        {tool::IsCount, {"0", "2147483647"}, {"-1", "2147483648"}},
        {tool::IsName, {"a", " a "}, {"", " "}},
    };
    for (const auto &row : cases) {
        for (std::string argument : row.accepted)
            EXPECT_EQ(row.validator(argument), "") << argument;
        for (std::string argument : row.refused)
            EXPECT_THAT(row.validator(argument), testing::HasSubstr(": " + argument)) << argument;
    }
    std::string number = "010";
    EXPECT_EQ(tool::IsId(number), "");
    EXPECT_EQ(number, "10") << "not the octal 8";
    EXPECT_EQ(tool::joined({"a", "b c"}), QStringLiteral("a b c"));
}

TEST(LineEditor, KeepsTheCursorVisibleInFewColumns)
{
    std::setlocale(LC_CTYPE, "C.UTF-8");
    tool::LineEditor editor(QStringLiteral("abcdef"));
    const auto view = [&](int columns) {
        const tool::LineEditor::View shown = editor.view(columns);
        return shown.text.toStdString() + " " + std::to_string(shown.cursor);
    };
    EXPECT_EQ(view(10), "abcdef 6");
    EXPECT_EQ(view(4), "def 3");
    editor.moveLeft();
    EXPECT_EQ(view(4), "def 2") << "the view does not move while the cursor is in it";
    for (int i = 0; i < 3; ++i)
        editor.moveLeft();
    EXPECT_EQ(view(4), "cdef 0");
    editor.moveToStart();
    editor.moveLeft();
    EXPECT_EQ(view(4), "abcd 0");
    editor.eraseLeft();
    editor.eraseRight();
    editor.insert(QStringLiteral("世"));
    EXPECT_EQ(view(4), "世bc 2");
    EXPECT_EQ(view(7), "世bcdef 2");
    editor.moveToEnd();
    editor.moveRight();
    EXPECT_EQ(view(9), "世bcdef 7");
    editor.insert(QStringLiteral("  "));
    editor.eraseWord();
    EXPECT_EQ(editor.text(), QString());
    editor.insert(QString(4096, QLatin1Char('x')));
    editor.insert(QStringLiteral("y"));
    EXPECT_EQ(editor.text().size(), 4096);
    editor.moveLeft();
    editor.eraseToStart();
    EXPECT_EQ(editor.text(), QStringLiteral("x"));
    editor.setText(QStringLiteral("a b"));
    editor.eraseWord();
    EXPECT_EQ(view(9), "a  2");
}
