// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "places/Place.h"
#include "places/PlaceManager.h"
#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vela::platform::places;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;
using Group = SearchResultGroup::Type;

namespace
{

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray feature(const char *name)
{
    return QByteArray(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[7,46]},"properties":{"name":")")
           + name + R"("}})";
}

QByteArray card(const char *name)
{
    return QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\nUID:1\r\nFN:") + name
           + "\r\nADR:;;Weg 1;Bern;;;CH\r\nEND:VCARD\r\n";
}

/// The names that are found in a group.
std::string found(Group group, const char *term)
{
    Error::Type error = Error::Unspecified;
    std::string names;
    for (const auto &place :
         PlaceManagerPrivate().findPlacesByGroup(group, &error, nullptr, QString::fromUtf8(term), 0, 9, {}, false))
        names += place->name().toStdString() + ";";
    EXPECT_EQ(error, Error::Success);
    return names;
}

} // namespace

TEST(TheProgram, DoesNotStartOnArgumentsThatMakeNoSense)
{
    const QTemporaryDir folder;
    qputenv("VELA_CHANNEL_DIR", folder.filePath(QStringLiteral("channels")).toLocal8Bit());
    const QString file = folder.filePath(QStringLiteral("file"));
    write(file, feature("One"));
    const struct
    {
        QStringList arguments;
        int status;
        QString says;
    } cases[] = {
        {{QStringLiteral("--gazetteer"), file, QStringLiteral("/no/gazetteer")},
         1,
         QStringLiteral("/no/gazetteer: No such file or directory")},
        {{QStringLiteral("--gazetteer"), folder.path()}, 1, folder.path() + QStringLiteral(": Is a directory")},
        {{QStringLiteral("--contacts"), QStringLiteral("/no/contacts")},
         1,
         QStringLiteral("/no/contacts: No such file or directory")},
        {{QStringLiteral("--contacts"), file}, 1, file + QStringLiteral(": Not a directory")},
        {{QStringLiteral("--fly")}, 2, QStringLiteral("--fly; see placesd --help")},
        {{QStringLiteral("fly\nhigh")}, 2, QStringLiteral("fly high; see placesd --help")},
        {{QStringLiteral("--pps-root")}, 2, QStringLiteral("--pps-root")},
    };
    for (const auto &row : cases) {
        const Outcome outcome =
            run("placesd", QStringList{QStringLiteral("--database"), file + QStringLiteral(".db")} + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << outcome.err;
        EXPECT_THAT(outcome.err, StartsWith("placesd: "));
        EXPECT_THAT(outcome.err, HasSubstr(row.says.toStdString()));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(TheProgram, ReadsContactsAgainWhenSignalled)
{
    const QTemporaryDir folder;
    const QString cards = folder.filePath(QStringLiteral("cards.vcf"));
    write(cards, card("Anna"));
    Placesd service({QStringLiteral("--gazetteer"), QString(), QStringLiteral("--contacts"), folder.path()});
    EXPECT_EQ(found(Group::Contacts, ""), "Anna;");
    // The card looks as before: size and time are the same.
    struct stat status = {};
    ASSERT_EQ(::stat(cards.toLocal8Bit().constData(), &status), 0);
    write(cards, card("Bert"));
    const timespec times[] = {status.st_atim, status.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, cards.toLocal8Bit().constData(), times, 0), 0);
    EXPECT_EQ(found(Group::Contacts, ""), "Anna;");
    service.signal(SIGHUP);
    for (int i = 0; i < 500 && found(Group::Contacts, "") != "Bert;"; ++i)
        ::usleep(10000);
    EXPECT_EQ(found(Group::Contacts, ""), "Bert;");
}

TEST(TheProgram, ReadsGazetteersAgainAndTellsItsStateWhenSignalled)
{
    const QTemporaryDir folder;
    const QString places = folder.filePath(QStringLiteral("places.geojson"));
    write(places, feature("Café One"));
    Placesd service({QStringLiteral("--gazetteer"), places});
    EXPECT_EQ(found(Group::Remote, "cafe"), "Café One;");
    write(places, feature("Café Twice"));
    EXPECT_EQ(found(Group::Remote, "cafe"), "Café One;");
    service.signal(SIGHUP);
    for (int i = 0; i < 500 && found(Group::Remote, "cafe") != "Café Twice;"; ++i)
        ::usleep(10000);
    EXPECT_EQ(found(Group::Remote, "cafe"), "Café Twice;");
    QFile::remove(places);
    service.signal(SIGHUP);
    service.awaitLog("places.geojson: No such file or directory");
    EXPECT_EQ(found(Group::Remote, "cafe"), "Café Twice;") << "what was read stays";

    Place place;
    place.setName(QStringLiteral("Stored"));
    Location location;
    location.setCoordinates(Coordinates(46, 7));
    place.addLocation(location);
    ASSERT_EQ(PlaceManager().addPlace(&place), Error::Success);
    service.signal(SIGUSR1);
    service.awaitLog("state: ");
    EXPECT_THAT(service.log(), ContainsRegex("state: 1 places, [0-9]+ clients, [1-9][0-9]* requests, the slowest of "
                                             "type [1-9][0-9]* with [0-9.]+ ms\n"));
}
