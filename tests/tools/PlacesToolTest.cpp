// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Files.h"
#include "support/Placesd.h"
#include "support/Session.h"
#include "support/Terminal.h"

#include <gmock/gmock.h>

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

namespace
{

QJsonObject json(const char *arguments)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(places(arguments).out)).object();
}

QByteArray times(int count, const QByteArray &bytes)
{
    return bytes.repeated(count);
}

QByteArray exported()
{
    const Outcome outcome = places("export");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return QByteArray::fromStdString(outcome.out);
}

QJsonArray features(const QByteArray &text)
{
    return QJsonDocument::fromJson(text)[QLatin1String("features")].toArray();
}

class PlacesTool : public testing::Test
{
protected:
    /// Imports bytes as a file of this extension.
    Outcome importFile(const char *extension, const QByteArray &bytes)
    {
        const QString path = service.path("in") + QLatin1Char('.') + QLatin1String(extension);
        files::write(path, bytes);
        return places(QStringList{QStringLiteral("import"), QStringLiteral("--duplicate"), path});
    }

    Placesd service;
};

} // namespace

TEST_F(PlacesTool, AnswersEveryCommandAsInTheSession)
{
    files::write(service.path("in.csv"), "name,lat,lon\nA,91,2\n");
    expectSession("session.txt", service);
    EXPECT_EQ(places(QStringList{QStringLiteral("add"), QStringLiteral(" "), QStringLiteral("--at=1,2")}).status, 2);
    service.kill();
    EXPECT_EQ(places("--no-start tags").status, 69);
}

TEST_F(PlacesTool, EveryCommandReportsItsResultAndFailsForMissingPlaces)
{
    const std::string file = service.path("out.geojson").toStdString();
    const std::string backup = service.path("backup.db").toStdString();
    const std::string none = "there is no such place: no place has the id 99\n";
    const std::string lake = "      1   Lake                                     Bern";
    const std::string river = "      2   River                                     47.01000, 8.00000\n";
    const struct
    {
        std::string arguments;
        int status;
        std::string out;
        std::string err; ///< The whole text; or its beginning followed by "...".
    } rows[] = {
        {"add Lake --at 47,8 --tag a", 0, "1\n", ""},
        {"add River --at 47.01,8", 0, "2\n", ""},
        {"-q add Lakeside --at 46,179.9", 0, "3\n", ""},
        {"update 1 --city Bern", 0, "changed 1 place\n", ""},
        {"update 1", 2, "",
         "places: update: nothing to change; give the new values as options; see places update --help\n"},
        {"update 99 --city Bern", 1, "", "places: place 99: " + none},
        {"fav 1 2", 0, "marked 2 places as favourite\n", ""},
        {"fav 1", 0, "marked 1 place as favourite\n", ""},
        {"unfav 1 3", 1, "unmarked 1 place as favourite\n",
         "places: place 3: is not a favourite; places fav makes it one\n"},
        {"unfav lake", 1, "", "places: unfav: there is nothing to change\n"},
        {"unfav 2 99", 1, "unmarked 1 place as favourite\n", "places: place 99: " + none},
        {"use 1 3", 0, "counted a use of 2 places\n", ""},
        {"--json tag 1 3 x y", 0, "{\"tagged\":2}\n", ""},
        {"tag 1", 2, "", "places: tag: which tag?..."},
        {"tag --as 2024 1", 0, "tagged 1 place\n", ""},
        {"untag 1 x nope", 1, "untagged 1 place\n", "places: place 1: has no tag nope\n"},
        {"untag --as x --tag y", 0, "untagged 1 place\n", ""},
        {"untag --as x --tag y", 1, "", "places: untag: there is nothing to change\n"},
        {"find --tag x", 0, "", "places: nothing found\n"},
        {"find lake --tag a", 0, lake + " 47.00000, 8.00000\n", ""},
        {"find --within 45,179,47,-179", 0, "      3   Lakeside                                  46.00000, 179.90000\n",
         ""},
        {"find --near lake --radius 1km", 0, lake + " 0 m\n", ""},
        {"find --since 2020-01-01 river", 0, river, ""},
        {"find --since 2100-01-01", 0, "", "places: nothing found\n"},
        {"find --owner nobody", 0, "", "places: nothing found\n"},
        {"find --radius 5", 2, "", "places: find: --radius needs a position..."},
        {"near 47,8 --radius 10", 0, lake + " 0 m\n", ""},
        {R"(near lake riv --format {id}\t{name}\n{distance}\\{latitude}\{{city}})", 0, "2\tRiver\n1112\\47.01{}\n", ""},
        {"find --format {id", 2, "", "places: find: --format: a \"{\" without..."},
        {R"(find --format a\q)", 2, "", "places: find: --format: unknown escape \"\\q\"; there are..."},
        {"find --format {ID}", 2, "", "places: find: --format: unknown member \"ID\"; there are id, name, ..."},
        {"--json find --format {id}", 2, "", "places: find: --json excludes --format; ..."},
        {"recent --limit 1 --format {name},{position}", 0, "Lakeside,46,179.9\n",
         "places: there are more results; see --limit and --offset\n"},
        {"recent x", 2, "", "places: recent: The following argument was not expected: x; ..."},
        {"recent --terms none", 0, "", "places: nothing found\n"},
        {"contacts nobody", 0, "", "places: nothing found\n"},
        {"providers --type none", 0, "", "places: nothing found\n"},
        {"providers x", 2, "", "places: providers: ..."},
        {"tags", 0, "2024\na\ny\n", ""},
        {"tags x", 2, "", "places: tags: ..."},
        {"search riv --near 1 --group local", 0, "On this device\n  1. " + river.substr(0, 51) + " 1.1 km N\n", ""},
        {"search riv --save 1", 0, "River is stored already, as place 2\n", ""},
        {"-q search riv --save 1,1", 0, "", ""},
        {"search riv --save 2", 1, "", "places: search: there is no result 2 to save; found: 1\n"},
        {"search riv --save 0", 2, "", "places: search: --save: not the number of a result, from 1 on: 0; ..."},
        {"link 1", 0, "https://...", ""},
        {"link 99", 1, "", "places: place 99: " + none},
        {"link 1 2", 2, "", "places: link: ..."},
        {"show 1 99 --document", 1, "{\"...", "places: place 99: " + none},
        {"export " + file + " lake", 0, "exported 2 places to " + file + "\n", ""},
        {"export " + file + " 1 99", 1, "", "places: place 99: " + none},
        {"export - --dry-run 2", 0, river, ""},
        {"import " + file, 0, "0 imported, 2 skipped, 0 failed\n", ""},
        {"--quiet import " + file, 0, "", ""},
        {"backup " + backup, 0, "wrote all that is stored to " + backup + "\n", ""},
        {"--json backup " + backup, 0, "{\"written\":\"" + backup + "\"}\n", ""},
        {"remove 1 river", 2, "", "places: remove: both numbers and words..."},
        {"remove 1 --tag a", 2, "", "places: remove: both numbers and conditions..."},
        {"remove", 2, "", "places: remove: no places are given..."},
        {"remove lake --dry-run", 0,
         lake + "   47.00000, 8.00000\n      3   Lakeside                                      46.00000, 179.90000\n",
         ""},
        {"remove lake", 2, "", "places: remove 2 places: more than one place; confirm with --yes..."},
        {"remove river", 0, "removed 1 place\n", ""},
        {"remove river", 1, "", "places: nothing found\n"},
        {"--json remove --yes 1 3", 0, "{\"removed\":2}\n", ""},
        {"-q restore " + backup, 0, "", ""},
        {"--json remove 1 3 99 --yes", 1, "{\"removed\":2}\n", "places: place 99: " + none},
    };
    const auto isAsSaid = [](std::string text, std::string said) {
        if (said.size() >= 3 && said.substr(said.size() - 3) == "...") {
            said.resize(said.size() - 3);
            text.resize(std::min(text.size(), said.size()));
        }
        return testing::ExplainMatchResult(testing::StrEq(said), text, nullptr);
    };
    for (const auto &row : rows) {
        const Outcome outcome = places(row.arguments.c_str());
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_TRUE(isAsSaid(outcome.out, row.out)) << row.arguments << ": " << outcome.out;
        EXPECT_TRUE(isAsSaid(outcome.err, row.err)) << row.arguments << ": " << outcome.err;
    }
}

TEST_F(PlacesTool, AChoiceMayHaveSeveralPages)
{
    QByteArray rows = "name,lat,lon\n";
    for (int i = 0; i < 1500; ++i)
        rows += "A,1," + QByteArray::number(i / 10.0) + '\n';
    EXPECT_EQ(places("-q import --format csv -", rows).status, 0);
    EXPECT_EQ(places("tag --as far --within 0,0,2,120").out, "tagged 1201 places\n");
    EXPECT_EQ(places("remove --tag far --yes").out, "removed 1201 places\n");
    EXPECT_EQ(places("remove --near 1,149.9 --radius 1000km --yes").out, "removed 90 places\n");
}

TEST_F(PlacesTool, AsksOnATerminalBeforeItRemovesSeveral)
{
    for (const char *name : {"A", "B"})
        places((std::string("add --at 1,2 ") + name).c_str());
    for (const auto &[answer, status] : {std::pair("\n", 1), std::pair("y\n", 0)}) {
        Terminal terminal([] { ::execl(PROGRAMS "/places", "places", "remove", "1", "2", nullptr); });
        EXPECT_TRUE(terminal.shows("remove 2 places? [y/N]"));
        terminal.type(answer);
        EXPECT_EQ(WEXITSTATUS(terminal.wait()), status);
        EXPECT_EQ(places("find").out.empty(), status == 0);
    }
}

TEST_F(PlacesTool, ABackupGoesThroughAPipe)
{
    places("add Lake --at 47,8");
    const Outcome written = places("backup -");
    EXPECT_EQ(written.status, 0) << written.err;
    EXPECT_EQ(places("remove 1").status, 0);
    EXPECT_EQ(places("restore -", QByteArray::fromStdString(written.out)).status, 0);
    EXPECT_THAT(places("find").out, HasSubstr("Lake"));
}

TEST_F(PlacesTool, APlaceIsChangedInTheEditor)
{
    places("add Lake --at 47,8 --tag a --phone 1");
    places("use 1");
    const std::string mark = service.path("mark").toStdString();
    const std::string client = PROGRAMS "/places -q ";
    const struct
    {
        std::string editor;
        const char *answers;
        int status;
        const char *says;
        const char *name; ///< Of the place afterwards.
    } cases[] = {
        {"true", "", 0, "place 1 is unchanged\n", "Lake"},
        {"sed -i s/Lake/Sea/", "", 0, "changed 1 place\n", "Sea"},
        {"false", "", 1, "the editor failed: false", "Sea"},
        {"sed -i s/Point/Blob/", "n\n", 1, "places: edit it again? [Y/n]", "Sea"},
        {"sed -i s/Point/Blob/", "", 1, "unknown type \"Blob\"", "Sea"},
        {"f() { if [ -e " + mark + " ]; then sed -i 's/Blob/Point/; s/Sea/Bay/' \"$1\"; else touch " + mark
             + "; sed -i s/Point/Blob/ \"$1\"; fi; }; f",
         "\n", 0, "changed 1 place\n", "Bay"},
        {client + "tag 1 other; sed -i s/Bay/Gulf/", "n\n", 1, "another program has changed it during the edit", "Bay"},
        {client + "tag 1 more; sed -i s/Bay/Gulf/", "y\n", 0, "changed 1 place\n", "Gulf"},
        {client + "use 1; sed -i s/Gulf/Fjord/", "", 0, "changed 1 place\n", "Fjord"},
        {client + "remove 1; sed -i s/Fjord/Sound/", "", 1, "there is no such place", nullptr},
    };
    for (const auto &row : cases) {
        qputenv("VISUAL", row.editor.c_str());
        const Outcome outcome = places("edit 1", row.answers);
        EXPECT_EQ(outcome.status, row.status) << row.editor;
        EXPECT_THAT(outcome.out + outcome.err, HasSubstr(row.says)) << row.editor;
        const Outcome shown = places("show 1");
        EXPECT_EQ(shown.status, row.name ? 0 : 1);
        if (!row.name)
            continue;
        EXPECT_THAT(shown.out, HasSubstr(std::string("Name          ") + row.name)) << row.editor;
        for (const char *kept : {"Position      47.00000, 8.00000\n", "Tags          a", "Phone         1\n", "Uses  "})
            EXPECT_THAT(shown.out, HasSubstr(kept)) << row.editor;
    }
    places("add Lake --at 47,8");
    qputenv("VISUAL", "stat -c %a:%n");
    const QString said = QString::fromStdString(places("edit 2").out).section(QLatin1Char('\n'), 0, 0);
    EXPECT_TRUE(said.startsWith(QLatin1String("600:/"))) << said.toStdString();
    EXPECT_FALSE(QFileInfo::exists(said.mid(4)));
    qunsetenv("VISUAL");
}

TEST_F(PlacesTool, PlacesAreListedNearAStoredOne)
{
    for (const char *arguments : {"add 47.24,8.72 --name Lake-house", "add 8FVC9G8F+6X --name Far",
                                  "add Hut --city Bern", "add Lake-view --at 47\u00b015'N,8\u00b043'12\"E"})
        EXPECT_EQ(places(arguments).status, 0) << arguments;
    const struct
    {
        const char *arguments;
        int status;
        const char *says;
        std::size_t lines;
    } cases[] = {
        {"near lake-house", 0, "Lake-view", 4},
        {"near LAKE-HOUSE --radius 2km", 0, "1.1 km", 2},
        {"near 1 --radius 500m", 0, "Lake-house", 1},
        {"near lake-v --radius 0", 0, "Lake-view", 1},
        {"near lake", 1, "1 Lake-house", 0},
        {"near lake", 1, "Lake-house; name one by its number", 0},
        {"near hut", 1, "places: place 3: has no position", 0},
    };
    for (const auto &row : cases) {
        const Outcome outcome = places(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.out + outcome.err, HasSubstr(row.says)) << row.arguments;
        EXPECT_EQ(static_cast<std::size_t>(std::count(outcome.out.begin(), outcome.out.end(), '\n')), row.lines)
            << row.arguments;
    }
}

TEST_F(PlacesTool, NoControlCharacterOfAPlaceReachesTheTerminal)
{
    const QString evil = QString::fromUtf8("\x1b[2J\xc2\x9b"
                                           "31m\x07\x7f\xe2\x80\x8f\xe2\x80\xae\xe2\x81\xa6"
                                           "Evil");
    EXPECT_EQ(places(QStringList{QStringLiteral("add"), evil, QStringLiteral("--at=1,2"), QStringLiteral("--tag"), evil,
                                 QStringLiteral("--city"), evil, QStringLiteral("--description"), evil})
                  .out,
              "1\n");
    const Outcome imported = places(QStringList{QStringLiteral("import"), evil});
    const std::string shown = places("find").out + places("show 1").out + places("tags").out + imported.err;
    EXPECT_THAT(shown, HasSubstr("Evil"));
    const QString wrong = evil.mid(1);
    const Outcome refused = places(QStringList{QStringLiteral("find"), QStringLiteral("--limit"), wrong});
    EXPECT_EQ(refused.status, 2);
    Terminal terminal([] { ::execl("/bin/sh", "sh", "-c", PROGRAMS "/places export 2> /dev/null", nullptr); });
    EXPECT_EQ(terminal.wait(), 0);
    std::string written = terminal.output();
    for (const char *arguments : {"--json find", "--json show 1", "--json tags", "show 1 --document"})
        written += places(arguments).out;
    EXPECT_THAT(written, HasSubstr("Evil"));
    for (const char *order : {"\x1b", "\xc2\x9b", "\x07", "\x7f", "\xe2\x80\x8f", "\xe2\x80\xae", "\xe2\x81\xa6"})
        EXPECT_THAT(shown + refused.err + written, Not(HasSubstr(order)));

    // Programs get the stored text: escaped in JSON, unchanged in an exported file.
    const QJsonObject properties = json("--json show 1")[QLatin1String("properties")].toObject();
    EXPECT_EQ(properties[QLatin1String("name")].toString(), evil);
    EXPECT_THAT(places("export").out, HasSubstr(evil.mid(evil.indexOf(QChar(0x7F))).toStdString()));
}

TEST_F(PlacesTool, OutputThatCannotBeWrittenIsAFailure)
{
    EXPECT_EQ(places("add Lake --at 1,2").out, "1\n");
    for (const char *arguments : {"find", "--json find", "export"}) {
        QProcess process;
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(QStringLiteral(PROGRAMS "/places"), QString::fromLatin1(arguments).split(QLatin1Char(' ')));
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 1) << arguments;
    }
}

TEST_F(PlacesTool, ProblemsComeInTheOrderOfTheFile)
{
    QByteArray rows = "name,lat,lon\n";
    QByteArray problems = "commas; columns: latitude from lat, longitude from lon\n";
    for (int row = 2; row <= 2000; ++row) {
        const bool isNowhere = row % 7 == 0;
        const bool isRefused = !isNowhere && row % 5 == 0;
        rows += (isRefused ? times(5000, "x") : QByteArray("A")) + (isNowhere ? ",91,2\n" : ",1,2\n");
        if (isNowhere || isRefused)
            problems += "row " + QByteArray::number(row)
                        + (isNowhere ? ": latitude 91 is beyond 90; are longitude and latitude swapped?\n"
                                     : ": more than the places service allows: a text of the place has more than 4096 "
                                       "UTF-16 units (descriptions and values of properties: 262144), or one of its "
                                       "lists more than 1000 members\n");
    }
    const Outcome outcome = importFile("csv", rows);
    const QString start = QStringLiteral("places: %1: ").arg(service.path("in.csv"));
    EXPECT_EQ(QString::fromStdString(outcome.err).remove(start), QString::fromUtf8(problems));
    EXPECT_EQ(outcome.out, "1371 imported, 0 skipped, 628 failed\n");
    EXPECT_EQ(features(exported()).size(), 1371) << "more than one page of the service";
}

TEST_F(PlacesTool, AnImportStopsWithTheServiceAndKeepsStoredPlaces)
{
    QProcess client;
    client.start(QStringLiteral(PROGRAMS "/places"),
                 {QStringLiteral("--no-start"), QStringLiteral("import"), QStringLiteral("--format"),
                  QStringLiteral("csv"), QStringLiteral("-")});
    client.write("name,lat,lon\nA,1,2\n" + times(64 * 1024, "\n"));
    for (int i = 0; i < 1000 && features(exported()).isEmpty(); ++i)
        client.waitForBytesWritten(10);
    // Writes are answered in order, so the addition is answered too.
    EXPECT_EQ(places("use 1").status, 0);
    service.kill();
    client.write("B,1,2\nC,91,2\nD,1,2\n");
    client.closeWriteChannel();
    EXPECT_TRUE(client.waitForFinished(60000));
    EXPECT_EQ(client.exitCode(), 69);
    EXPECT_EQ(client.readAllStandardOutput(), "1 imported, 0 skipped, 1 failed\n");
    service.start();
    EXPECT_EQ(features(exported()).size(), 1);
}

TEST_F(PlacesTool, AnExportCanBeImportedAndPiped)
{
    EXPECT_EQ(exported(), "{\"type\":\"FeatureCollection\",\"features\":[\n\n]}\n");
    EXPECT_EQ(places("add A --at 1,2").status, 0);
    const Outcome documents = places("export --format json");
    EXPECT_EQ(QByteArray::fromStdString(documents.out).count("\"complete\":true"), 1);
    EXPECT_EQ(places("import -", QByteArray::fromStdString(documents.out)).out, "0 imported, 1 skipped, 0 failed\n");
    for (const char *name : {"out.geojson.gz", "out.zip"}) {
        EXPECT_EQ(places(QStringList{QStringLiteral("export"), service.path(name)}).status, 0) << name;
        const Outcome outcome = places(QStringList{QStringLiteral("import"), service.path(name)});
        EXPECT_EQ(outcome.out, "0 imported, 1 skipped, 0 failed\n") << name << outcome.err;
    }
    EXPECT_EQ(places("add Łód --at 1,2").status, 0);
    EXPECT_THAT(places("export --format json").out, HasSubstr("\"name\":\"Łód\""));
    const Outcome reduced = places("export --format json-latin1");
    EXPECT_THAT(reduced.out, HasSubstr("\"name\":\"?ód\""));
    EXPECT_THAT(reduced.err, HasSubstr("1 place has characters that ISO 8859-1 does not have"));
    EXPECT_EQ(reduced.status, 0);
    EXPECT_EQ(places("export /no/such/folder/x").status, 1);
    const QByteArray pipe = service.path("pipe").toLocal8Bit();
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const int end = ::open(pipe.constData(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(places(QStringList{QStringLiteral("export"), service.path("pipe")}).status, 0);
    char byte = 0;
    EXPECT_EQ(::read(end, &byte, 1), 1) << "the pipe is not replaced by a file";
    ::close(end);
}

TEST(PlacesToolAlone, StartsAServiceWhenNoneRuns)
{
    QTemporaryDir home;
    qputenv("VELA_CHANNEL_DIR", home.filePath(QStringLiteral("none")).toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    const Outcome added = places("add Café --at 46.9,7.4");
    EXPECT_EQ(added.out, "1\n");
    EXPECT_THAT(added.err, HasSubstr("started one for this command"));
    EXPECT_THAT(places("find caf").out, HasSubstr("Café")) << "each started service uses the database of the user";
}
