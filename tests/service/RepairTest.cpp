// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Repair.h"
#include "store/Check.h"
#include "store/Records.h"
#include "store/Store.h"
#include "support/Client.h"
#include "support/Files.h"
#include "support/Golden.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <random>
#include <sqlite3.h>
#include <sys/stat.h>

using files::bytesOf;
using files::write;
using namespace vela::platform::places;
using namespace placesd;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

constexpr char DATA[] = "service/data/damage.txt";
constexpr int PAGE = 4096;
constexpr uid_t GUEST = 1000;

/// A database of some hundred places, as a service leaves it, and its content. Some places are larger than a page, some
/// belong to guests, and some are removed.
class RepairTest : public testing::Test
{
protected:
    static constexpr int ADDED = 400;

    RepairTest()
    {
        StoreShared shared;
        const std::string file = path("sound.db").toStdString();
        {
            Store store(file, shared);
            store.write([&] {
                for (int i = 1; i <= ADDED; ++i)
                    add(store, i);
                return true;
            });
        }
        Store store(file, shared);
        write(path("log.db"), bytesOf(path("sound.db"))); // later changes are only in the log
        store.write([&] {
            for (int id = 5; id <= ADDED; id += 5) {
                store.remove(id);
                records.erase(id);
            }
            store.rememberTerm(QStringLiteral("lake"));
            return true;
        });
        write(path("log.db-wal"), bytesOf(path("sound.db-wal")));
    }

    void add(Store &store, int i)
    {
        sample::FullPlace place(-1);
        place.setName(QStringLiteral("Place %1").arg(i));
        QString text;
        for (auto words = i % 20 == 7 ? 2500 : random() % 40; words > 0; --words)
            text += QString::number(random(), 36) + QLatin1Char(' ');
        place.setDescription(text);
        store.insert(place, i % 3 == 0 ? std::optional(GUEST) : std::nullopt);
        ASSERT_EQ(place.id(), i);
        records[i] = fullRecordOf(place);
    }

    /// The pages of a table or index, or those that a condition selects.
    std::vector<int> pagesOf(const std::string &condition)
    {
        SQLite::Database database(path("sound.db").toStdString());
        SQLite::Statement page(database, "SELECT pageno FROM dbstat WHERE " + condition);
        std::vector<int> pages;
        while (page.executeStep())
            pages.push_back(page.getColumn(0).getInt());
        EXPECT_FALSE(pages.empty()) << condition;
        return pages;
    }
    /// The places with parts of their records on these pages, according to SQLite and the sound database.
    std::set<qint64> placesOn(const std::vector<int> &pages)
    {
        std::set<qint64> places;
        auto next = records.begin();
        SQLite::Database database(path("sound.db").toStdString());
        SQLite::Statement leaf(database, "SELECT pageno, ncell, path FROM dbstat"
                                         " WHERE name = 'record' AND pagetype = 'leaf' ORDER BY path");
        SQLite::Statement overflow(database, "SELECT pageno FROM dbstat WHERE name = 'record' AND path LIKE ?1");
        while (leaf.executeStep()) {
            for (int cell = 0; cell < leaf.getColumn(1).getInt(); ++cell, ++next) {
                std::vector<int> own = {leaf.getColumn(0).getInt()};
                overflow.reset();
                overflow.bind(1, leaf.getColumn(2).getString()
                                     + QString::asprintf("%03x+%%", static_cast<unsigned>(cell)).toStdString());
                while (overflow.executeStep())
                    own.push_back(overflow.getColumn(0).getInt());
                const auto isTouched = [&](int page) { return std::count(pages.begin(), pages.end(), page) > 0; };
                if (std::any_of(own.begin(), own.end(), isTouched))
                    places.insert(next->first);
            }
        }
        EXPECT_EQ(next, records.end());
        return places;
    }

    QByteArray noise(int size)
    {
        QByteArray bytes(size, '\0');
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(random()); });
        return bytes;
    }

    Repair::Report repair(const char *name)
    {
        QFile::remove(path("new.db"));
        return Repair::run(path(name).toStdString(), path("new.db").toStdString());
    }
    /// Expects a sound repaired database with exactly the stored places, except at most those in `lost`.
    void expectPlaces(const Repair::Report &report, const std::set<qint64> &lost, bool hasGuests = true)
    {
        EXPECT_THAT(checkDatabase(path("new.db").toStdString()), IsEmpty());
        StoreShared shared;
        Store store(path("new.db").toStdString(), shared);
        qint64 found = 0;
        for (int id = 1; id <= ADDED + 1; ++id) {
            const std::string record = store.storedRecord(id, false);
            found += record.empty() ? 0 : 1;
            const auto known = records.find(id);
            const bool isStored = known != records.end();
            if (!isStored || lost.count(id) == 0) {
                EXPECT_EQ(record, isStored ? known->second : std::string()) << id;
            }
            if (lost.count(id) == 0 && hasGuests) {
                EXPECT_EQ(store.isGuest(id), isStored && id % 3 == 0) << id;
            }
        }
        EXPECT_EQ(found, store.placeCount(~0)) << "no other places";
        EXPECT_EQ(static_cast<qint64>(report.places), found);
        EXPECT_LE(report.lostPlaces, lost.size());
        sample::FullPlace next(-1);
        store.write([&] { return store.insert(next), true; });
        EXPECT_GT(next.id(), ADDED) << "no id is reused";
    }

    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
    std::mt19937 random{20261125};
    std::map<qint64, std::string> records; ///< Stored records by id.
};

} // namespace

TEST_F(RepairTest, AllReadablePagesAreRepaired)
{
    const QByteArray sound = bytesOf(path("sound.db"));
    for (const auto &[name, condition, losses] : golden::rows<3>(DATA, "pages")) {
        SCOPED_TRACE(name);
        const std::vector<int> pages = condition.empty() ? std::vector<int>() : pagesOf(condition);
        QByteArray damaged = sound;
        for (const int page : pages)
            damaged.replace((page - 1) * PAGE, PAGE, noise(PAGE));
        write(path("damaged.db"), damaged);
        const Repair::Report report = repair("damaged.db");
        EXPECT_EQ(bytesOf(path("damaged.db")), damaged) << "it is unchanged";
        EXPECT_EQ(report.losses.empty(), losses.empty()) << testing::PrintToString(report.losses);
        EXPECT_EQ(report.terms, losses == "losses, terms" ? 0U : 1U);
        const std::set<qint64> lost = placesOn(pages);
        EXPECT_EQ(report.lostPlaces, lost.size());
        for (const qint64 id : lost)
            EXPECT_THAT(report.losses, testing::Contains(HasSubstr("place " + std::to_string(id) + " (place")));
        expectPlaces(report, lost, losses != "losses, guests");
    }
}

TEST_F(RepairTest, PlacesOnSoundPagesNeedNoOtherPage)
{
    const int wanted = qEnvironmentVariableIsSet("PLACES_ROUNDS") ? qEnvironmentVariableIntValue("PLACES_ROUNDS") : 12;
    const QByteArray sound = bytesOf(path("sound.db"));
    const auto count = sound.size() / PAGE;
    for (int round = 0; round < wanted && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        random.seed(static_cast<unsigned>(round));
        QByteArray damaged = sound;
        std::vector<int> pages;
        for (auto changes = 1 + random() % 20; changes > 0; --changes) {
            const int page = 1 + static_cast<int>(random() % static_cast<unsigned>(count));
            const int other = static_cast<int>(random() % static_cast<unsigned>(count));
            const int bytes = 1 + static_cast<int>(random() % 12);
            const QByteArray contents[] = {noise(PAGE), QByteArray(PAGE, '\0'), sound.mid(other * PAGE, PAGE),
                                           noise(bytes)};
            const QByteArray &content = contents[random() % 4];
            damaged.replace((page - 1) * PAGE + (page == 1 && content.size() < PAGE ? 100 : 0), content.size(),
                            content);
            pages.push_back(page);
        }
        if (random() % 4 == 0) {
            const int left = static_cast<int>(count) - static_cast<int>(random() % 60);
            damaged.truncate(left * PAGE - static_cast<int>(random() % PAGE));
            for (int page = left; page <= count; ++page)
                pages.push_back(page);
        }
        write(path("damaged.db"), damaged);
        const Repair::Report report = repair("damaged.db");
        expectPlaces(report, placesOn(pages), false);
    }
}

/// Without the root of the table, records are searched on all pages.
TEST_F(RepairTest, OnlyTheNewestVersionIsRestoredAndNoRemovedPlace)
{
    const int root = pagesOf("name = 'record' AND pagetype = 'internal'")[0];
    const int leaf = pagesOf("name = 'record' AND pagetype = 'leaf'")[2];
    const qint64 changed = *placesOn({leaf}).begin();
    const QByteArray stale = bytesOf(path("sound.db")).mid((leaf - 1) * PAGE, PAGE);
    {
        StoreShared shared;
        Store store(path("sound.db").toStdString(), shared);
        const std::unique_ptr<Place> before = store.place(changed);
        const std::unique_ptr<Place> after = store.place(changed);
        PlacePrivate &data = *PlacePrivate::privateFromPublic(after.get());
        data.setUpdatedTime(data.updatedTime() + 1);
        store.write([&] { return store.update(*after, *before), true; });
        records[changed] = fullRecordOf(*after);
    }
    // As an older service left it: deleted data stays on its page.
    SQLite::Database(path("sound.db").toStdString(), SQLite::OPEN_READWRITE)
        .exec("PRAGMA secure_delete = OFF; PRAGMA foreign_keys = ON; DELETE FROM place WHERE id BETWEEN 200 AND 299");
    records.erase(records.lower_bound(200), records.lower_bound(300));
    QByteArray damaged = bytesOf(path("sound.db")) + stale;
    damaged.replace((root - 1) * PAGE, PAGE, noise(PAGE));
    write(path("damaged.db"), damaged);
    expectPlaces(repair("damaged.db"), {});
}

TEST_F(RepairTest, PlacesInTheLogAreRepaired)
{
    QByteArray database = bytesOf(path("log.db"));
    const QByteArray log = bytesOf(path("log.db-wal"));
    ASSERT_GT(log.size(), 10 * PAGE);
    EXPECT_THAT(checkDatabase(path("log.db").toStdString()), IsEmpty());
    expectPlaces(repair("log.db"), {});
    database.replace(0, PAGE, noise(PAGE)); // the log has a newer one
    write(path("log.db"), database);
    expectPlaces(repair("log.db"), {});
    EXPECT_EQ(bytesOf(path("log.db")), database);
    EXPECT_EQ(bytesOf(path("log.db-wal")), log);
    // A damaged log ends before the damage.
    write(path("log.db-wal"), QByteArray(log).replace(log.size() / 2, 4, "torn"));
    EXPECT_GT(repair("log.db").places, records.size());
}

TEST_F(RepairTest, TheExitStatusReportsTheResult)
{
    QByteArray damaged = bytesOf(path("sound.db"));
    const int leaf = pagesOf("name = 'record' AND pagetype = 'leaf'")[2];
    damaged.replace((leaf - 1) * PAGE, PAGE, noise(PAGE));
    write(path("damaged.db"), damaged);
    write(path("text"), QByteArray(10000, 'x'));
    write(path("unreadable.db"), bytesOf(path("sound.db")));
    SQLite::Database(path("unreadable.db").toStdString(), SQLite::OPEN_READWRITE)
        .exec("UPDATE record SET full_record = x'00' WHERE place = 7; PRAGMA wal_checkpoint(TRUNCATE)");
    const QString lost = QString::number(*placesOn({leaf}).begin());
    for (const auto &[command, status, part] : golden::rows<3>(DATA, "commands")) {
        QStringList arguments = QString::fromStdString(command).split(QLatin1Char(' '));
        for (QString &argument : arguments) {
            if (!argument.startsWith(QLatin1String("--")))
                argument = folder.filePath(argument);
        }
        const Outcome outcome = run("placesd", arguments);
        const QString says = QString::fromStdString(part).replace(QStringLiteral("LEAF"), lost);
        EXPECT_EQ(std::to_string(outcome.status), status) << command << outcome.out << outcome.err;
        EXPECT_THAT(outcome.out + outcome.err, HasSubstr(says.toStdString())) << command;
    }
    struct stat state = {};
    ASSERT_EQ(::stat(path("new.db").toLocal8Bit().constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 07777, 0600U);
    EXPECT_FALSE(QFile::exists(path("fourth.db")));
}

TEST_F(RepairTest, RunningWritesStopOnDamage)
{
    const std::string file = path("sound.db").toStdString();
    StoreShared shared;
    shared.damage.emplace(file);
    Store store(file, shared);
    const auto write = [&](int code) {
        return store.write([&] {
            store.rememberTerm(QStringLiteral("sea"));
            shared.damage->note(SQLite::Exception("met on the way", code));
            return true;
        });
    };
    EXPECT_TRUE(write(SQLITE_BUSY));
    for (const int code : {SQLITE_CORRUPT, SQLITE_NOTADB}) {
        shared.damage.emplace(file);
        EXPECT_THROW(write(code), SQLite::Exception);
        EXPECT_THROW(write(SQLITE_OK), SQLite::Exception);
    }
    EXPECT_EQ(store.recentTerms(QString()).size(), 2);
}
