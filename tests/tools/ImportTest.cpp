// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ImportSummary.h"
#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <csignal>

using testing::EndsWith;
using testing::HasSubstr;

namespace
{

/// A feature at 46 degrees north; a degree of longitude is 77.2 km there.
std::string feature(const std::string &id, const std::string &name, double longitude, const std::string &more = {})
{
    const std::string member = id.empty() ? "" : R"("id":)" + id + ",";
    return R"({"type":"Feature",)" + member + R"("geometry":{"type":"Point","coordinates":[)"
           + std::to_string(longitude) + R"(,46]},"properties":{"name":")" + name + "\"" + more + "}}\n";
}

Outcome import(const std::string &text, const QStringList &options = {})
{
    return places(QStringList{QStringLiteral("import"), QStringLiteral("-")} + options,
                  QByteArray::fromStdString(text));
}

int stored()
{
    return static_cast<int>(QByteArray::fromStdString(places("export").out).count("\"type\":\"Feature\""));
}

} // namespace

TEST(Import, AMemberIsIdentifiedByItsIdOrByNameAndPosition)
{
    const std::string many = [] {
        std::string text;
        for (int i = 0; i < 100; ++i)
            text += feature("\"twice\"", "Twice", 1) + feature("", "Twice too", 2);
        return text;
    }();
    const std::string rows = "name,city,lat,lon\nNowhere,Bern,,\nNowhere,Basel,,\nnowhere,Bern,,\n";
    const struct
    {
        const char *what;
        std::string text;
        int imported;
        int skipped;
    } cases[] = {
        {"a file", feature("1", "Bern", 7) + feature("\"b\"", "Basel", 8), 2, 0},
        {"the same again", feature("1", "Bern", 7) + feature("\"b\"", "Basel", 8), 0, 2},
        {"another file that numbers from 1", feature("1", "Chur", 9), 1, 0},
        {"the id and the name", feature("1", "BERN", 70), 0, 1},
        {"the id, 0.8 km away", feature("\"b\"", "Bâle", 8.01), 0, 1},
        {"the id, 1.2 km away", feature("\"b\"", "Riehen", 8.016), 1, 0},
        {"a number is not a text", feature("\"1\"", "Bern", 7.1), 1, 0},
        {"the name, 20 m away", feature("", "bern", 7.00026), 0, 1},
        {"the name, 30 m away", feature("", "Bern", 7.0004), 1, 0},
        {"another id and the name, 8 m away", feature("2", "Bern", 6.9999), 1, 0},
        {"another id and the name, 0.1 m away", feature("3", "Bern", 7.000001), 0, 1},
        {"no position: the name and the address", rows, 2, 1},
        {"many times in one file, at the same time", many, 2, 198},
    };
    const Placesd service;
    int count = 0;
    for (const auto &row : cases) {
        const std::string outcome =
            std::to_string(row.imported) + " imported, " + std::to_string(row.skipped) + " skipped, 0 failed\n";
        EXPECT_THAT(import(row.text, {QStringLiteral("--dry-run")}).out,
                    testing::EndsWith("dry run, nothing is written: " + outcome))
            << row.what;
        EXPECT_EQ(import(row.text).out, outcome) << row.what;
        EXPECT_EQ(stored(), count += row.imported) << row.what;
    }
    EXPECT_EQ(import(many, {QStringLiteral("--duplicate")}).out, "200 imported, 0 skipped, 0 failed\n");
    EXPECT_EQ(stored(), count + 200);
}

TEST(Import, NamesakesMayFillSeveralPages)
{
    std::string chain;
    for (int i = 0; i < 60; ++i)
        chain += feature("1", "Chain", i) + feature("", "Chain", 0.5 + i / 6000.0);
    const Placesd service;
    EXPECT_EQ(import(chain, {QStringLiteral("--duplicate")}).out, "120 imported, 0 skipped, 0 failed\n");
    EXPECT_EQ(
        import(feature("1", "Other", 59) + feature("1", "Chain", 90) + feature("", "Chain", 0.5 + 59 / 6000.0)).out,
        "0 imported, 3 skipped, 0 failed\n");
}

TEST(Import, AnUpdateAppliesTheFileAndKeepsOtherValues)
{
    const Placesd service;
    const QStringList update{QStringLiteral("--update")};
    const QStringList dryUpdate = update + QStringList{QStringLiteral("--dry-run")};
    const std::string first = feature("1", "Bern", 7, R"(,"street":"A","x":1,"tags":["city"],"phone":"1")");
    const std::string second = feature("1", "Berne", 7.001, R"(,"street":"B","x":2,"tags":["capital"],"phone":"2")");
    EXPECT_EQ(import(first + second + second, dryUpdate).out,
              "would import feature 1: Bern\nwould update a place of this import with feature 2: Berne\n"
              "dry run, nothing is written: 1 imported, 1 updated, 1 unchanged, 0 skipped, 0 failed\n");
    EXPECT_EQ(import(first, {QStringLiteral("--tag"), QStringLiteral("trip")}).out,
              "1 imported, 0 skipped, 0 failed\n");
    EXPECT_EQ(import(first, update).out, "0 imported, 0 updated, 1 unchanged, 0 skipped, 0 failed\n");
    for (const char *change : {"fav 1", "tag 1 mine", "use 1", "update 1 --city Bern --email a@b.example"})
        EXPECT_EQ(places(change).status, 0);
    EXPECT_EQ(import(first, update).out, "0 imported, 0 updated, 1 unchanged, 0 skipped, 0 failed\n");

    EXPECT_EQ(import(second, dryUpdate).out,
              "would update place 1 with feature 1: Berne\n"
              "dry run, nothing is written: 0 imported, 1 updated, 0 unchanged, 0 skipped, 0 failed\n");
    EXPECT_THAT(places("export").out, HasSubstr("\"name\":\"Bern\""));
    EXPECT_EQ(import(second + first + second, update).out, "0 imported, 3 updated, 0 unchanged, 0 skipped, 0 failed\n");
    const std::string out = places("export").out;
    for (const char *part : {R"("id":1)", R"("name":"Berne")", "[7.001,46.0]", R"("street":"B")", R"("x":2)",
                             R"("phone":"2")", R"("city":"Bern")", R"("email":"a@b.example")", R"("favorite":true)",
                             R"("usageCount":1)", R"("tags":["city","trip","lbs-favorite","mine","capital"])"})
        EXPECT_THAT(out, HasSubstr(part));
}

TEST(ImportSummary, CountsKindsOtherThanPlaces)
{
    using formats::MemberKind;
    tool::ImportSummary summary;
    summary.count(tool::MemberOutcome::Imported);
    EXPECT_EQ(summary.text({}).toStdString(), "1 imported, 0 skipped, 0 failed");
    for (const MemberKind kind : {MemberKind::Track, MemberKind::Area, MemberKind::Track})
        summary.count(kind);
    EXPECT_EQ(summary.text({}).toStdString(), "1 imported, 0 skipped, 0 failed; 1 area (--areas imports it), 2 tracks");
    summary.count(MemberKind::Area);
    summary.count(MemberKind::Route);
    EXPECT_EQ(
        summary.text({tool::StoredMembers::Update}).toStdString(),
        "1 imported, 0 updated, 0 unchanged, 0 skipped, 0 failed; 2 areas (--areas imports them), 2 tracks, 1 route");
    EXPECT_EQ(
        summary.json().left(summary.json().indexOf(",\"problems")).toStdString(),
        R"({"imported":1,"updated":0,"unchanged":0,"skipped":0,"failed":0,"lines":0,"areas":2,"tracks":2,"routes":1)");
}

TEST(Import, AnInterruptedImportPrintsHowToContinue)
{
    const Placesd service;
    for (const int signal : {SIGINT, SIGTERM}) {
        QProcess client;
        client.start(QStringLiteral(PROGRAMS "/places"), {QStringLiteral("import"), QStringLiteral("-")});
        client.write(QByteArray::fromStdString(feature("", "A", signal)) + QByteArray(64 * 1024, '\n'));
        for (int i = 0; i < 1000 && stored() == (signal == SIGINT ? 0 : 1); ++i)
            client.waitForBytesWritten(10);
        EXPECT_EQ(::kill(static_cast<pid_t>(client.processId()), signal), 0);
        EXPECT_TRUE(client.waitForFinished(60000)) << "also while it waits for input";
        EXPECT_EQ(client.exitStatus(), QProcess::CrashExit) << "a shell reports 128 plus the signal";
        EXPECT_EQ(client.readAllStandardOutput(), "1 imported, 0 skipped, 0 failed\n");
        EXPECT_THAT(
            client.readAllStandardError().toStdString(),
            EndsWith("interrupted: run the same command again to import the rest; stored places are skipped\n"));
    }
}
