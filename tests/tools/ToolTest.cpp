// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using testing::HasSubstr;
using testing::Not;

namespace
{

QJsonObject json(const char *arguments)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(places(arguments).out)).object();
}

class ToolTest : public testing::Test
{
protected:
    Outcome import(const QByteArray &text)
    {
        QFile file(service.path("in.geojson"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.close();
        return places(QStringList{QStringLiteral("import"), file.fileName()});
    }

    Placesd service;
};

const QByteArray FEATURE = R"({"type":"Feature","id":"x:1","geometry":{"type":"Point","coordinates":[7.4,46.9,540]},)"
                           R"("properties":{"name":"B\u00e4rn","kind":"large_airport","iata":"BRN","city":"Bern"}})";

QByteArray collection(const QByteArray &features)
{
    return "{\"type\":\"FeatureCollection\",\"features\":[" + features + "]}";
}

} // namespace

TEST_F(ToolTest, APlaceGoesThroughItsWholeLife)
{
    EXPECT_EQ(places("add Café --at -46.9,7.4 --city Bern --tag beach --phone 031").out, "1\n");
    EXPECT_EQ(places("fav 1").status, 0);
    EXPECT_EQ(places("tag 1 a b").status, 0);
    EXPECT_EQ(places("untag 1 a").status, 0);
    EXPECT_EQ(places("use 1").status, 0);
    EXPECT_EQ(places("update 1 --name Kaffee --email a@b.example").status, 0);
    const QJsonObject place = json("--json show 1");
    const QJsonObject properties = place[QLatin1String("properties")].toObject();
    EXPECT_EQ(place[QLatin1String("geometry")].toObject()[QLatin1String("coordinates")].toArray(),
              (QJsonArray{7.4, -46.9}));
    EXPECT_EQ(properties[QLatin1String("name")], QLatin1String("Kaffee"));
    EXPECT_EQ(properties[QLatin1String("phone")], QLatin1String("031")) << "what was not changed stays";
    EXPECT_EQ(properties[QLatin1String("usageCount")], 1);
    EXPECT_EQ(properties[QLatin1String("tags")].toArray().size(), 3);
    EXPECT_THAT(places("find kaf").out, HasSubstr("Kaffee"));
    EXPECT_THAT(places("near -46.8,7.4").out, HasSubstr("Kaffee"));
    EXPECT_THAT(places("recent").out, HasSubstr("Kaffee"));
    EXPECT_EQ(places("tags").out, "b\nbeach\nlbs-favorite\n");
    EXPECT_THAT(places("link 1").out, HasSubstr("lat=-46.9000000&lon=7.4000000"));
    EXPECT_EQ(places("unfav 1").status, 0);
    EXPECT_EQ(places("unfav 1").status, 1);
    EXPECT_EQ(places("remove 1").status, 0);
    EXPECT_EQ(json("--json find kaf")[QLatin1String("features")].toArray().size(), 0);
}

TEST_F(ToolTest, EveryWayOfGoingWrongHasItsStatusAndSaysWhy)
{
    const struct
    {
        const char *arguments;
        int status;
        const char *says;
    } cases[] = {
        {"show 99", 1, "place 99: there is no such place"},
        {"remove 98 99", 1, "place 98"},
        {"show", 2, "PLACE"},
        {"show nine", 2, "nine"},
        {"near 91,0", 2, "not a position"},
        {"add X", 2, "needs a position"},
        {"show 99999999999999999999", 2, "neither a number"},
        {"fav 99999999999999999999", 2, "not the number of a place"},
        {"remove 0x10", 2, "not the number of a place"},
        {"use -1", 2, "not the number of a place"},
        {"fav 010", 1, "place 10: there is no such place"},
        {"find --offset -1", 2, "not a whole number from 0 to 2147483647: -1"},
        {"find --limit 9999999999", 2, "not a whole number from 0 to 2147483647: 9999999999"},
        {"update 1 --name \u00a0", 2, "more than blanks"},
        {"import /", 1, "directory"},
        {"import /no/such.geojson", 1, "No such file"},
        {"fly", 2, ""},
    };
    for (const auto &row : cases) {
        const Outcome outcome = places(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.err, HasSubstr(row.says)) << row.arguments;
        EXPECT_EQ(outcome.out, outcome.status == 1 && QByteArray(row.arguments).startsWith("import")
                                   ? "0 imported, 0 skipped, 0 failed\n"
                                   : "")
            << row.arguments;
    }
    EXPECT_EQ(places(QStringList{QStringLiteral("add"), QStringLiteral(" "), QStringLiteral("--at=1,2")}).status, 2);
    service.kill();
    EXPECT_EQ(places("--no-start tags").status, 69);
}

TEST_F(ToolTest, ArgumentsMayBeginWithADashAndAnOptionTakesNoMoreThanItsOwn)
{
    EXPECT_EQ(places("tags").out, "");
    EXPECT_EQ(places("add --at -1,-2 -- -x").out, "1\n");
    EXPECT_EQ(places("tag 1 -- -t").status, 0);
    EXPECT_EQ(places("add --tag a Lake --at 1,2").out, "2\n") << "a tag, and then the name";
    EXPECT_EQ(places("tags").out, "-t\na\n");
    EXPECT_THAT(places("near -1,-2 -- -x").out, HasSubstr("-x"));
}

TEST_F(ToolTest, NothingThatAPlaceHoldsReachesTheTerminalAsAnOrder)
{
    const QString evil = QString::fromUtf8("\x1b[2J\xc2\x9b"
                                           "31m\x07\x7f\xe2\x80\xae\xe2\x81\xa6"
                                           "Evil");
    EXPECT_EQ(places(QStringList{QStringLiteral("add"), evil, QStringLiteral("--at=1,2"), QStringLiteral("--tag"), evil,
                                 QStringLiteral("--city"), evil, QStringLiteral("--description"), evil})
                  .out,
              "1\n");
    const Outcome imported = places(QStringList{QStringLiteral("import"), evil});
    const std::string shown = places("find").out + places("show 1").out + places("tags").out + imported.err;
    EXPECT_THAT(shown, HasSubstr("Evil"));
    for (const char *order : {"\x1b", "\xc2\x9b", "\x07", "\x7f", "\xe2\x80\xae", "\xe2\x81\xa6"})
        EXPECT_THAT(shown, Not(HasSubstr(order)));
}

TEST_F(ToolTest, ColumnsStandUnderOneAnotherWhateverTheWidthOfTheLetters)
{
    for (const char *name : {"\u6771\u4eac\u99c5", "e\u0301te\u0301", "plain",
                             "\u6771\u4eac\u6771\u4eac\u6771\u4eac\u6771\u4eac\u6771\u4eac\u6771\u4eac\u6771\u4eac"
                             "\u6771\u4eac\u6771\u4eac\u6771\u4eac\u6771\u4eac"})
        (void)places(QStringList{QStringLiteral("add"), QString::fromUtf8(name), QStringLiteral("--at=1,2"),
                                 QStringLiteral("--city=Bern")});
    // Behind the number: three letters of two columns, five with two combining ones, five, and 19 of two and an
    // ellipsis.
    const QString rows = QString::fromStdString(places("find").out);
    QList<int> lengths;
    for (const QString &row : rows.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        lengths.append(row.indexOf(QLatin1String("Bern")));
    EXPECT_EQ(lengths, (QList<int>{51 - 3, 51 + 2, 51, 51 - 19})) << rows.toStdString();
}

TEST_F(ToolTest, WithJsonEveryCommandThatWritesWritesJson)
{
    EXPECT_EQ(places("add Caf\u00e9 --at 1,2 --tag x").out, "1\n");
    EXPECT_EQ(places("add Lake --at 1,2").out, "2\n");
    EXPECT_THAT(json("--json link 1")[QLatin1String("url")].toString().toStdString(), HasSubstr("lat=1.0"));
    EXPECT_EQ(json("--json find --limit 1")[QLatin1String("hasMore")], true);
    EXPECT_EQ(json("--json find")[QLatin1String("hasMore")], false);
    EXPECT_EQ(places("--json tags").out, "[\"x\"]\n");
    const QJsonObject counts = json("--json import /no/such");
    EXPECT_EQ(counts[QLatin1String("imported")], 0);
    EXPECT_EQ(counts[QLatin1String("problems")].toArray()[0].toObject()[QLatin1String("file")],
              QLatin1String("/no/such"));
}

TEST_F(ToolTest, OutputThatCannotBeWrittenIsAFailure)
{
    EXPECT_EQ(places("add Lake --at 1,2").out, "1\n");
    for (const char *arguments : {"find", "show 1", "--json find", "export", "--help"}) {
        QProcess process;
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(QStringLiteral(PROGRAMS "/places"), QString::fromLatin1(arguments).split(QLatin1Char(' ')));
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 1) << arguments;
        EXPECT_NE(process.readAllStandardError(), "") << arguments;
    }
}

TEST_F(ToolTest, ImportTakesWhatIsAPlaceAndNamesWhatIsNot)
{
    const QByteArray text = collection(FEATURE + ",7,{}," + QByteArray(FEATURE).replace("\"Point\"", "\"Polygon\"")
                                       + "," + QByteArray(FEATURE).replace("46.9", "146.9") + ","
                                       + QByteArray(FEATURE).replace("\"name\"", "\"title\"") + "," + FEATURE);
    const Outcome outcome = import(text);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "2 imported, 5 skipped, 0 failed\n");
    for (const char *line : {"feature 2: not a feature", "feature 3: not a feature", "feature 4: no point",
                             "feature 5: no point", "feature 6: no name"})
        EXPECT_THAT(outcome.err, HasSubstr(line));
    const QJsonObject place = json("--json show 2");
    const QJsonObject properties = place[QLatin1String("properties")].toObject();
    EXPECT_EQ(properties[QLatin1String("name")], QString::fromUtf8("Bärn"));
    EXPECT_EQ(properties[QLatin1String("aliases")].toArray(), QJsonArray{QLatin1String("BRN")});
    EXPECT_TRUE(properties[QLatin1String("tags")].toArray().contains(QLatin1String("lbs-airport")));
    EXPECT_EQ(place[QLatin1String("geometry")].toObject()[QLatin1String("coordinates")].toArray()[2], 540);
}

TEST(TheClient, StartsAServiceOfItsOwnWhereNoneRuns)
{
    QTemporaryDir home;
    qputenv("VELA_CHANNEL_DIR", home.filePath(QStringLiteral("none")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    const Outcome added = places("add Café --at 46.9,7.4");
    EXPECT_EQ(added.out, "1\n");
    EXPECT_THAT(added.err, HasSubstr("started one for this command"));
    EXPECT_THAT(places("find caf").out, HasSubstr("Café"))
        << "the places are the user's own, whoever starts the service";
}
