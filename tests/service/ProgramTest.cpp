// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "places/Place.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "support/Client.h"
#include "support/Files.h"
#include "support/Placesd.h"
#include "support/VCards.h"

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sqlite3.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace vela::platform::places;
using files::bytesOf;
using files::write;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;
using Group = SearchResultGroup::Type;

namespace
{

QByteArray feature(const char *name)
{
    return QByteArray(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[7,46]},"properties":{"name":")")
           + name + R"("}})";
}

QByteArray cardOf(const QByteArray &name)
{
    return files::card("UID:1\r\nFN:" + name + "\r\nADR:;;Weg 1;Bern;;;CH\r\n");
}

/// Stores a place and returns its id.
qint64 addPlace(const char *name)
{
    Place place;
    place.setName(QLatin1String(name));
    Location location;
    location.setCoordinates(Coordinates(46, 7));
    place.addLocation(location);
    EXPECT_EQ(PlaceManager().addPlace(&place), Error::Success);
    return place.id();
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

TEST(Placesd, DoesNotStartWithInvalidArguments)
{
    const QTemporaryDir folder;
    qputenv("VELA_CHANNEL_DIR", folder.filePath(QStringLiteral("channels")).toLocal8Bit());
    const std::string file = folder.filePath(QStringLiteral("file")).toStdString();
    write(QString::fromStdString(file), feature("One"));
    const std::string noVCards = "made without the library KContacts";
    const struct
    {
        std::vector<std::string> arguments;
        int status;
        std::string says;
    } cases[] = {
        {{"--gazetteer", file, "/no/gazetteer"}, 1, "/no/gazetteer: No such file or directory"},
        {{"--gazetteer", folder.path().toStdString()}, 1, folder.path().toStdString() + ": Is a directory"},
        {{"--contacts", "/no/contacts"}, 1, HAS_VCARDS ? "/no/contacts: No such file or directory" : noVCards},
        {{"--contacts", file}, 1, HAS_VCARDS ? file + ": Not a directory" : noVCards},
        {{"--fly"}, 2, "--fly; see placesd --help"},
        {{"fly\nhigh"}, 2, "fly high; see placesd --help"},
        {{"--pps-root"}, 2, "--pps-root"},
    };
    for (const auto &row : cases) {
        QStringList arguments{QStringLiteral("--database"), QString::fromStdString(file + ".db")};
        for (const std::string &argument : row.arguments)
            arguments.append(QString::fromStdString(argument));
        const Outcome outcome = run("placesd", arguments);
        EXPECT_EQ(outcome.status, row.status) << outcome.err;
        EXPECT_THAT(outcome.err, StartsWith("placesd: "));
        EXPECT_THAT(outcome.err, HasSubstr(row.says));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(Placesd, ServesOnlyInAFolderThatOthersCannotReplace)
{
    const QTemporaryDir folder;
    const auto path = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
    for (const char *name : {"open", "open/inner", "sticky", "shared", "mine", "blocked"})
        ASSERT_TRUE(QDir().mkdir(path(name)));
    const auto mode = [&](const char *name, mode_t bits) {
        ASSERT_EQ(::chmod(path(name).toLocal8Bit().constData(), bits), 0);
    };
    mode("open", 0777);
    mode("sticky", 01777);
    mode("shared", 0770);
    ASSERT_TRUE(QFile::link(path("mine"), path("link")));
    ASSERT_TRUE(QFile::link(path("open"), path("door")));
    write(path("blocked/places"), "mine");
    const struct
    {
        const char *folder;
        const char *says; ///< Null when it starts.
    } cases[] = {
        {"open/inner", "open belongs to another user, or others may write to it"},
        {"door/inner", "open belongs to another user, or others may write to it"},
        {"shared", "shared belongs to another user, or others may write to it"},
        {"link", "link is not a folder"},
        {"link/", "link is not a folder"},
        {"blocked", "blocked/places: File exists"},
        {"sticky/inner", nullptr},
        {"link/inner", nullptr},
    };
    for (const auto &row : cases) {
        qputenv("VELA_CHANNEL_DIR", path(row.folder).toLocal8Bit());
        QProcess service;
        service.start(QStringLiteral(PROGRAMS "/placesd"), {QStringLiteral("--database"), path("places.db")});
        for (int i = 0; i < 500 && !service.waitForFinished(10) && Placesd::exchange({}).empty(); ++i) {
        }
        service.terminate();
        ASSERT_TRUE(service.state() == QProcess::NotRunning || service.waitForFinished(20000));
        EXPECT_EQ(service.exitCode(), row.says ? 1 : 0) << row.folder;
        EXPECT_THAT(service.readAllStandardError().toStdString(), HasSubstr(row.says ? row.says : "")) << row.folder;
    }
    EXPECT_TRUE(QFile::exists(path("blocked/places"))) << "only sockets are removed";
}

TEST(Placesd, ReadsItsSourcesAgainAndLogsItsStateOnSignals)
{
    NEEDS_VCARDS();
    const QTemporaryDir folder;
    const QString cards = folder.filePath(QStringLiteral("cards.vcf"));
    const QString places = folder.filePath(QStringLiteral("places.geojson"));
    write(cards, cardOf("Anna"));
    write(places, feature("Caf\u00E9 One"));
    Placesd service({QStringLiteral("--gazetteer"), places, QStringLiteral("--contacts"), folder.path()});
    const auto foundNow = [] { return found(Group::Contacts, "") + found(Group::Remote, "cafe"); };
    EXPECT_EQ(foundNow(), "Anna;Caf\u00E9 One;");
    // The card looks unchanged: size and time are the same.
    struct stat status = {};
    ASSERT_EQ(::stat(cards.toLocal8Bit().constData(), &status), 0);
    write(cards, cardOf("Bert"));
    const timespec times[] = {status.st_atim, status.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, cards.toLocal8Bit().constData(), times, 0), 0);
    write(places, feature("Caf\u00E9 Twice"));
    EXPECT_EQ(foundNow(), "Anna;Caf\u00E9 One;");
    service.signal(SIGHUP);
    for (int i = 0; i < 1000 && foundNow() != "Bert;Caf\u00E9 Twice;"; ++i)
        ::usleep(10000);
    EXPECT_EQ(foundNow(), "Bert;Caf\u00E9 Twice;");
    QFile::remove(places);
    service.signal(SIGHUP);
    service.awaitLog("places.geojson: No such file or directory");
    EXPECT_EQ(foundNow(), "Bert;Caf\u00E9 Twice;") << "the old gazetteer stays";

    addPlace("Stored");
    service.signal(SIGUSR1);
    service.awaitLog("state: ");
    EXPECT_THAT(service.log(),
                ContainsRegex("state: 1 places, [0-9]+ clients, [1-9][0-9]* requests, [0-9]+ a minute, the slowest of "
                              "type [1-9][0-9]* with [0-9.]+ ms\n"));
}

TEST(Placesd, DoesNotChangeForeignFiles)
{
    const QTemporaryDir folder;
    qputenv("VELA_CHANNEL_DIR", folder.filePath(QStringLiteral("channels")).toLocal8Bit());
    const auto path = [&](const char *name) { return folder.filePath(QLatin1String(name)); };
    const auto make = [&](const char *name, const char *sql) {
        SQLite::Database database(path(name).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        // Keeps the content of the log in the log.
        sqlite3_db_config(database.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        database.exec(sql);
    };
    make("plain ?#%41", "CREATE TABLE theirs(a)");
    make("numbered", "CREATE TABLE theirs(a); PRAGMA user_version = 3");
    make("marked", "PRAGMA user_version = 7");
    make("logged", "PRAGMA journal_mode = WAL; CREATE TABLE theirs(a)");
    make("switched", "PRAGMA journal_mode = WAL; CREATE TABLE theirs(a); PRAGMA wal_checkpoint(TRUNCATE)");
    EXPECT_TRUE(QFile::remove(path("switched-wal")) && QFile::remove(path("switched-shm")));
    write(path("text"), "not a database, but longer than the header of one");
    const auto state = [&] {
        QByteArray bytes;
        for (const QString &name : QDir(folder.path()).entryList(QDir::Files)) {
            bytes +=
                name.toUtf8() + (name.endsWith(QLatin1String("-shm")) ? QByteArray() : bytesOf(folder.filePath(name)));
        }
        return bytes;
    };
    const QByteArray before = state();
    for (const char *name : {"plain ?#%41", "numbered", "marked", "logged", "switched", "text", "."}) {
        const Outcome outcome = run("placesd", {QStringLiteral("--database"), path(name)});
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_THAT(outcome.err, StartsWith("placesd: " + path(name).toStdString() + ": ")) << name;
        EXPECT_EQ(state(), before) << name;
    }
}

TEST(Placesd, MakesAnOpenDatabasePrivate)
{
    Placesd service;
    service.kill();
    const char *const files[] = {"places.db", "places.db-wal", "places.db-shm"};
    for (const char *name : files)
        ASSERT_EQ(::chmod(service.path(name).toLocal8Bit().constData(), 0666), 0) << name;
    service.start();
    for (const char *name : files) {
        struct stat status = {};
        ASSERT_EQ(::stat(service.path(name).toLocal8Bit().constData(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 07777, 0600U) << name;
        EXPECT_THAT(service.log(), HasSubstr(service.path(name).toStdString() + " had mode 0666"));
    }
    service.stop();
    write(service.path("places.db"), "");
    service.start();
    EXPECT_TRUE(service.isRunning()) << "an empty file is a new database";
}

TEST(Placesd, OverwritesTheNamesOfRemovedPlaces)
{
    Placesd service;
    for (int i = 0; i < 100; ++i)
        addPlace("Kept");
    const std::unique_ptr<Place> renamed(PlaceManager().getPlace(addPlace("Oldname")));
    ASSERT_TRUE(renamed);
    renamed->setName(QStringLiteral("Newname"));
    ASSERT_EQ(PlaceManager().updatePlace(renamed.get()), Error::Success);
    ASSERT_EQ(PlaceManager().removePlace(addPlace("Goneaway")), Error::Success);
    ASSERT_EQ(Protocol().backup(service.path("backup.db").toStdString()), Error::Success);
    service.stop();
    for (const char *path : {"places.db", "backup.db"}) {
        const QByteArray bytes = bytesOf(service.path(path)).toLower();
        for (const char *name : {"kept", "newname", "oldname", "goneaway"})
            EXPECT_EQ(bytes.contains(name), name[0] == 'k' || name[0] == 'n') << path << name;
    }
}

TEST(Placesd, LeavesNoCoreWithTheSessionKey)
{
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit();
    qputenv("VELA_CHANNEL_DIR", path + "/channels");
    const auto dumpsCore = [&](std::vector<const char *> command, const char *sign) {
        const pid_t process = ::fork();
        if (process == 0) {
            const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
            command.push_back(nullptr);
            if (::chdir(path.constData()) == 0 && ::setrlimit(RLIMIT_CORE, &unlimited) == 0)
                ::execvp(command[0], const_cast<char *const *>(command.data()));
            ::_exit(1);
        }
        for (int i = 0; i < 1000 && !QFile::exists(folder.filePath(QLatin1String(sign))); ++i)
            ::usleep(10000);
        ::kill(process, SIGABRT);
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFSIGNALED(status));
        return WCOREDUMP(status);
    };
    constexpr char SERVICE[] = PROGRAMS "/placesd";
    EXPECT_FALSE(
        dumpsCore({SERVICE, "--database", "places.db", "--pps-root", "pps", "--gazetteer", ""}, "channels/places"));
    if (!dumpsCore({"sh", "-c", "touch started; exec sleep 60"}, "started"))
        GTEST_SKIP() << "no process leaves a core here";
}
