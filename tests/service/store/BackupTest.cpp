// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Backup.h"

#include "store/Store.h"
#include "support/Files.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <atomic>
#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace placesd;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class BackupTest : public testing::Test
{
protected:
    qint64 add(const QString &name)
    {
        sample::FullPlace place(-1);
        place.setName(name);
        EXPECT_TRUE(store.write([&] { return store.insert(place), true; }));
        return place.id();
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> names;
        for (qint64 id = 1; id <= 9999; ++id) {
            if (const std::unique_ptr<Place> place = store.place(id))
                names.push_back(place->name().toStdString());
        }
        return names;
    }
    Status backUp(const std::string &file) { return keeper.backUp(file, Deadline::max()); }
    Status restore(const std::string &file) { return keeper.restore(file, Deadline::max()); }
    std::string path(const char *name) const { return folder.filePath(QLatin1String(name)).toStdString(); }
    void write(const char *name, const QByteArray &bytes) { files::write(folder.filePath(QLatin1String(name)), bytes); }

    const mode_t mask = ::umask(0077); // like the program
    const QTemporaryDir folder;
    StoreShared shared;
    BackupKeeper keeper{path("places.db"), shared};
    Store store{path("places.db"), shared};
};

} // namespace

TEST_F(BackupTest, RestoresExactlyTheBackedUpPlaces)
{
    const qint64 kept = add(QStringLiteral("Kept"));
    ASSERT_EQ(backUp(path("copy.db")), ReturnCode::Success);
    struct stat status = {};
    ASSERT_EQ(::stat(path("copy.db").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U) << "places are private";

    ASSERT_TRUE(store.write([&] { return store.remove(kept); }));
    const qint64 later = add(QStringLiteral("Later"));
    EXPECT_TRUE(store.vocabulary().hasPrefix("later"));
    shared.damage.emplace(path("places.db"));
    ASSERT_EQ(restore(path("copy.db")), ReturnCode::Success);
    EXPECT_THAT(names(), ElementsAre("Kept"));
    EXPECT_EQ(store.placeCount(~0), 1);
    EXPECT_GT(add(QStringLiteral("Next")), later) << "no id is reused";
    store.check([](const std::string &problem, qint64 place) { ADD_FAILURE() << problem << place; });
    EXPECT_THAT(
        QDir(folder.path())
            .entryList({QStringLiteral("*.db.*"), QStringLiteral("*restore*")}, QDir::AllEntries | QDir::Hidden),
        IsEmpty())
        << "no temporary files are left";

    EXPECT_EQ(keeper.restore(path("copy.db"), Clock::now()), ReturnCode::TookTooLong);
    EXPECT_EQ(keeper.backUp(path("late.db"), Clock::now()), ReturnCode::TookTooLong);
    shared.damage->note(SQLite::Exception("as told", 11));
    EXPECT_EQ(restore(path("copy.db")), ReturnCode::StorageFailed);
    EXPECT_THAT(backUp(path("copy.db")).reason, HasSubstr("the database is damaged")) << "the sound backup is kept";
    EXPECT_EQ(SQLite::Database(path("copy.db")).execAndGet("SELECT count(*) FROM place").getInt(), 1);
}

TEST_F(BackupTest, AFailureChangesNothing)
{
    add(QStringLiteral("Here"));
    ASSERT_EQ(backUp(path("copy.db")), ReturnCode::Success);
    const QByteArray copy = files::bytesOf(folder.filePath(QStringLiteral("copy.db")));
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
        const char *reason; // for backup and restore; one may be null
        const char *ofBackup;
    } files[] = {
        {"none", "none cannot be opened by the service: No such file", nullptr},
        {"none/copy.db", "No such file", "none is not a folder"},
        {"text", "text is not an SQLite file", "file is not a database; name a new file"},
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
        {"misshared", "places of the open channel and their counts", nullptr},
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
    const std::string here = path("");
    const auto expectFailure = [&](const Status &status, ReturnCode code, const char *reason) {
        EXPECT_EQ(status, code) << reason;
        EXPECT_THAT(status.reason, testing::AllOf(HasSubstr(here), HasSubstr(reason)));
    };
    for (const auto &file : files) {
        if (file.reason)
            expectFailure(restore(path(file.name)), ReturnCode::RestoreFailed, file.reason);
        if (file.ofBackup)
            expectFailure(backUp(path(file.name)), ReturnCode::BackupFailed, file.ofBackup);
    }
    EXPECT_EQ(QFile::symLinkTarget(folder.filePath(QStringLiteral("symlink"))).toStdString(), path("copy.db"));
    // Nobody can write there, not even root.
    EXPECT_THAT(backUp("/proc/copy.db").reason, testing::AllOf(HasSubstr("/proc"), HasSubstr("write to")));
    EXPECT_EQ(SQLite::Database(path("other")).execAndGet("SELECT count(*) FROM theirs").getInt(), 0);
    ::chmod(path("open").c_str(), 01777);
    write("empty", "");
    for (const char *name : {"open/copy.db", "empty", "copy.db", "a ?#%41", "a ?#%41"})
        EXPECT_EQ(backUp(path(name)), ReturnCode::Success) << name;
    for (const std::string name : {"", "copy.db", "./copy.db"}) {
        for (const Status &status : {backUp(name), restore(name)})
            EXPECT_THAT(status.reason, HasSubstr("is not an absolute path")) << name;
    }
    EXPECT_THAT(backUp("/none/" + std::string(600, 'x') + "/y").reason, testing::StartsWith("...xxx"));
    EXPECT_THAT(names(), ElementsAre("Here"));
}

TEST_F(BackupTest, RunsWhileOthersReadAndWrite)
{
    for (int i = 0; i < 50; ++i)
        add(QStringLiteral("Old %1").arg(i));
    ASSERT_EQ(backUp(path("old.db")), ReturnCode::Success);
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        for (int i = 0; !stop; ++i)
            add(QStringLiteral("New %1").arg(i));
    });
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(backUp(path("live.db")), ReturnCode::Success);
        EXPECT_EQ(restore(path(i % 2 ? "old.db" : "live.db")), ReturnCode::Success);
    }
    stop = true;
    writer.join();
    EXPECT_EQ(SQLite::Database(path("live.db")).execAndGet("PRAGMA integrity_check").getString(), "ok");
    EXPECT_EQ(restore(path("old.db")), ReturnCode::Success);
    EXPECT_EQ(names().size(), 50U);
}
