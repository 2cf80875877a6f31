// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <atomic>
#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace vela::platform::places;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

/// The store's own road into a file and back.
class BackupTest : public testing::Test
{
protected:
    qint64 add(const QString &name)
    {
        Place place;
        place.addLocation(Location());
        PlacePrivate::privateFromPublic(&place)->m_locations[0].setCoordinates(Coordinates(46, 7));
        place.setName(name);
        EXPECT_EQ(manager.addPlace(&place), Error::Success);
        return place.id();
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> names;
        for (const PlaceHeader *place : manager.findPlaces(QString(), nullptr, nullptr, byName, 0, 10000)) {
            names.push_back(place->name().toStdString());
            delete place;
        }
        return names;
    }
    std::string path(const char *name) { return service.path(name).toStdString(); }
    void write(const char *name, const QByteArray &bytes)
    {
        QFile file(service.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    Placesd service;
    PlaceManager manager;
    Protocol protocol;
    const SortRule byName = SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
};

} // namespace

TEST_F(BackupTest, BringsBackWhatWasThereAndNothingElse)
{
    const qint64 kept = add(QStringLiteral("Kept"));
    ASSERT_EQ(manager.addTag(kept, QStringLiteral("beach")), Error::Success);
    ASSERT_EQ(protocol.backup(path("copy.db")), Error::Success);
    struct stat status = {};
    ASSERT_EQ(::stat(path("copy.db").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U) << "places are private";

    ASSERT_EQ(manager.removePlace(kept), Error::Success);
    const qint64 later = add(QStringLiteral("Later"));
    ASSERT_EQ(protocol.restore(path("copy.db")), Error::Success);
    EXPECT_THAT(names(), ElementsAre("Kept"));
    EXPECT_THAT(manager.getTagsInUse(), ElementsAre(QStringLiteral("beach")));
    EXPECT_GT(add(QStringLiteral("Next")), later) << "no id comes back as another place's";
    EXPECT_EQ(manager.findPlaces(QStringLiteral("later")).size(), 0) << "the index of the names was restored too";

    service.kill();
    service.start();
    EXPECT_THAT(names(), ElementsAre("Kept", "Next"));
    EXPECT_EQ(QDir(service.path(""))
                  .entryList({QStringLiteral("*.db.*"), QStringLiteral("*restore*")}, QDir::AllEntries | QDir::Hidden)
                  .size(),
              0)
        << "nothing is left lying about";
}

TEST_F(BackupTest, AFailedOneChangesNothing)
{
    add(QStringLiteral("Here"));
    ASSERT_EQ(protocol.backup(path("copy.db")), Error::Success);
    QFile good(service.path("copy.db"));
    ASSERT_TRUE(good.open(QIODevice::ReadOnly));
    const QByteArray copy = good.readAll();
    write("text", "not a database at all, but longer than its magic");
    write("cut", copy.left(copy.size() / 2));
    QByteArray torn = copy;
    for (int i = 8192; i < torn.size(); i += 512)
        torn[i] = static_cast<char>(torn[i] ^ 0x55);
    write("torn", torn);
    const auto edited = [&](const char *name, const char *sql) {
        write(name, copy);
        SQLite::Database(path(name), SQLite::OPEN_READWRITE).exec(sql);
    };
    edited("newer", "PRAGMA user_version = 99");
    edited("foreign", "DROP TABLE search_term");
    edited("trap", "CREATE TRIGGER trap AFTER DELETE ON place BEGIN DELETE FROM facet; END");
    edited("hidden",
           "PRAGMA writable_schema = ON; INSERT INTO sqlite_master(type, name, tbl_name, rootpage, sql) VALUES"
           " ('trigger', 'sqlite_trap', 'place', 0,"
           " 'CREATE TRIGGER sqlite_trap AFTER INSERT ON place BEGIN DELETE FROM record; END')");
    edited("disguised", "CREATE TABLE name_index_more(a)");
    edited("viewed", "ALTER TABLE search_term RENAME TO name_index_term;"
                     " CREATE VIEW search_term AS SELECT * FROM name_index_term");
    edited("uncounted", "UPDATE facet SET places = -1 WHERE kind = 1");
    edited("misshared", "INSERT INTO guest_share VALUES (5, -9, -9)");
    edited("undefined", "DELETE FROM dictionary");
    edited("reused", "UPDATE last_id SET place = 0");
    edited("unreadable", "UPDATE record SET full_record = x'00'");

    SQLite::Database(path("other"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("CREATE TABLE theirs(a)");
    ASSERT_EQ(::link(path("places.db").c_str(), path("linked").c_str()), 0);
    ASSERT_EQ(::mkdir(path("open").c_str(), 0700) + ::chmod(path("open").c_str(), 0777), 0);
    ASSERT_EQ(::symlink("copy.db", path("symlink").c_str()) + ::mkfifo(path("pipe").c_str(), 0600), 0);
    const struct
    {
        const char *name;
        const char *reason; // may be for one of both only
        const char *ofBackup;
    } files[] = {
        {"none", "none cannot be opened by the service: No such file", nullptr},
        {"none/copy.db", "No such file", "none is no folder"},
        {"text", "text is no SQLite file", "file is not a database; name a file that is not there"},
        {"cut", "it is damaged", nullptr},
        {"torn", "malformed", nullptr},
        {"newer", "it is of version 99, and this placesd reads 1 to 5", "it is of version 99"},
        {"other", "the SQLite file of another program", "the SQLite file of another program"},
        {"foreign", "not have the tables of a database of places", "not have the tables of a database of places"},
        {"trap", "not have the tables", nullptr},
        {"hidden", "", nullptr},
        {"disguised", "not have the tables", nullptr},
        {"viewed", "not have the tables", nullptr},
        {"uncounted", "uncounted: it is damaged: counts of tags", nullptr},
        {"undefined", "", nullptr},
        {"reused", "it is damaged", nullptr},
        {"unreadable", "its record cannot be read; name another backup", nullptr},
        {"places.db", "the database in use", "the database in use"},
        {".", "is a folder", "is a folder; name a file"},
        {"pipe", "is no regular file", "is no regular file"},
        {"symlink", nullptr, "symlink is a symbolic link; name the file that it leads to"},
        {"linked", "the database in use", "the database in use"},
        {"places.db-wal", "in use", "in use"},
        {"places.db-shm", "in use", "in use"},
        {"places.db-journal", "in use", "in use"},
        {"./places.db-journal", "in use", "in use"},
        {"places.db-gazetteer", "in use", "in use"},
        {"open/copy.db", "No such file", "no sticky bit; name a file in another folder"},
    };
    const auto failed = [](Error::Type error) {
        const std::string reason = Error::reason(error).toStdString();
        EXPECT_LE(reason.size(), orix_places_protocol::REASON_SIZE);
        return reason;
    };
    for (const auto &file : files) {
        if (file.reason) {
            EXPECT_EQ(protocol.restore(path(file.name)), Error::RestoreFailed) << file.name;
            EXPECT_THAT(failed(Error::RestoreFailed),
                        AllOf(HasSubstr(service.path("").toStdString()), HasSubstr(file.reason)));
        }
        if (file.ofBackup) {
            EXPECT_EQ(protocol.backup(path(file.name)), Error::BackupFailed) << file.name;
            EXPECT_THAT(failed(Error::BackupFailed),
                        AllOf(HasSubstr(service.path("").toStdString()), HasSubstr(file.ofBackup)));
            EXPECT_THAT(service.log(), HasSubstr(Error::reason(Error::BackupFailed).toStdString()));
        }
    }
    EXPECT_EQ(QFile::symLinkTarget(service.path("symlink")), service.path("copy.db"));
    // Nobody can write there, not even root.
    EXPECT_EQ(protocol.backup("/proc/copy.db"), Error::BackupFailed);
    EXPECT_THAT(failed(Error::BackupFailed), AllOf(HasSubstr("/proc"), HasSubstr("write to")));
    EXPECT_EQ(SQLite::Database(path("other")).execAndGet("SELECT count(*) FROM theirs").getInt(), 0);
    ::chmod(path("open").c_str(), 01777);
    write("empty", "");
    for (const char *name : {"open/copy.db", "empty", "copy.db", "a ?#%41", "a ?#%41"})
        EXPECT_EQ(protocol.backup(path(name)), Error::Success) << name;
    for (const char *name : {"", "copy.db", "./copy.db"}) {
        EXPECT_EQ(protocol.backup(name), Error::BackupFailed) << name;
        EXPECT_EQ(protocol.restore(name), Error::RestoreFailed) << name;
        EXPECT_THAT(failed(Error::RestoreFailed), HasSubstr("is no absolute path")) << name;
    }
    EXPECT_THAT(names(), ElementsAre("Here"));
}

TEST_F(BackupTest, GoesOnWhileOthersReadAndWrite)
{
    for (int i = 0; i < 50; ++i)
        add(QStringLiteral("Old %1").arg(i));
    ASSERT_EQ(protocol.backup(path("old.db")), Error::Success);
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        for (int i = 0; !stop; ++i)
            add(QStringLiteral("New %1").arg(i));
    });
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(protocol.backup(path("live.db")), Error::Success);
        EXPECT_EQ(protocol.restore(path(i % 2 ? "old.db" : "live.db")), Error::Success);
    }
    stop = true;
    writer.join();
    EXPECT_EQ(SQLite::Database(path("live.db")).execAndGet("PRAGMA integrity_check").getString(), "ok");
    EXPECT_EQ(protocol.restore(path("old.db")), Error::Success);
    EXPECT_EQ(names().size(), 50U);
}
