// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using testing::HasSubstr;

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
    service.kill();
    EXPECT_EQ(places("--no-start tags").status, 69);
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
