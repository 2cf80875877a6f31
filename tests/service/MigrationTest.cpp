// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "store/Records.h"
#include "store/Repair.h"
#include "store/Store.h"
#include "support/Placesd.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>

#include <sys/stat.h>

using namespace vela::platform::places;
using placesd::fullRecordOf;
using testing::ElementsAre;

namespace
{

/// A database that an earlier version of placesd created within one second.
struct OldDatabase
{
    const char *name;
    int version;
    quint64 time; ///< Time of all operations of the service.
};

// Ids of its places. The ids between them and the last id belong to removed places.
constexpr qint64 FULL = 1;
constexpr qint64 CONTACT = 3;
constexpr qint64 USED = 4;
constexpr qint64 UNREADABLE = 5;
constexpr qint64 RECENT = 6;
constexpr qint64 HIGHEST = 7;

/// The place that was stored with an id. Its location and its record have the same id.
std::unique_ptr<Place> placeOf(qint64 id, quint64 time)
{
    auto place = std::make_unique<sample::FullPlace>(id);
    PlacePrivate &data = place->data();
    Address address = data.m_locations[0].address();
    for (const auto clear : {&Address::setBuilding, &Address::setCampus, &Address::setHouseNumber, &Address::setRegion,
                             &Address::setCountry, &Address::setPostalCode})
        (address.*clear)(QString());
    address.setExtendedAddressLines(QStringList());
    data.m_locations[0].setAddress(address);
    data.setSearchTerm(QString());
    data.setCreatedTime(time);
    data.setUpdatedTime(time);
    if (id != FULL) {
        const char *names[] = {"", "", "Gone", "Ｃafé Zoë", "Zürich", "Broken", "Cafeteria", "Last"};
        data.setName(QString::fromUtf8(names[id]));
        data.setOwner(QString());
        data.m_tags = QStringList{QStringLiteral("beach")};
        data.m_locations[0].setCoordinates(Coordinates(46.2 + static_cast<double>(id), 6.15));
        data.m_auxiliaryData[0] = AuxiliaryData(id == CONTACT ? AuxiliaryData::TypeContact : QStringLiteral("x-other"));
        data.m_auxiliaryData[0].setExternalId(QStringLiteral("1,5,0"));
        data.m_auxiliaryData[0].addProperty(QStringLiteral("Überzug"), QString(200, QLatin1Char('x')));
    }
    if (id == RECENT) {
        data.setPersistenceMask(PlacePrivate::InRecentBucket);
        data.m_locations[0].setCoordinates(Coordinates());
    }
    if (id == USED) {
        data.incrementUsageCount();
        data.setLastUsedTime(time);
    }
    LocationPrivate::privateFromPublic(&data.m_locations[0])->setId(id);
    AuxiliaryDataPrivate::fromPublic(data.m_auxiliaryData[0])->setId(id);
    return place;
}

class MigrationTest : public testing::TestWithParam<OldDatabase>
{
protected:
    /// Copies the old database and removes all other files of the service.
    QString put(const char *name) const
    {
        for (const char *end : {"", "-wal", "-shm"})
            QFile::remove(service.path(name) + QLatin1String(end));
        const QString old = QStringLiteral(SOURCES "/tests/service/data/") + QLatin1String(GetParam().name);
        EXPECT_TRUE(QFile::copy(old, service.path(name)));
        return service.path(name);
    }
    template <typename List>
    static std::vector<qint64> ids(const List &places)
    {
        std::vector<qint64> ids;
        for (const auto *place : places)
            ids.push_back(place->id());
        qDeleteAll(places);
        return ids;
    }
    Error::Type error = Error::Success;
    void expectPlacesAndTerms()
    {
        for (const qint64 id : {FULL, CONTACT, USED, RECENT}) {
            const std::unique_ptr<Place> place(manager.getPlace(id));
            ASSERT_TRUE(place) << id;
            EXPECT_EQ(fullRecordOf(*place), fullRecordOf(*placeOf(id, GetParam().time))) << id;
        }
        const SortRule near = SortRule::createDistanceSortRule(Coordinates(50, 6), SortOrder::Ascending);
        EXPECT_THAT(ids(manager.findPlaces(QStringLiteral("cafe"), nullptr, nullptr, near)),
                    ElementsAre(CONTACT, FULL, RECENT));
        EXPECT_THAT(ids(manager.findPlacesByTags({QStringLiteral("beach")}, nullptr, nullptr, near)),
                    ElementsAre(USED, CONTACT, RECENT));
        EXPECT_THAT(ids(manager.findPlacesByTypes({AuxiliaryData::TypeContact})), ElementsAre(CONTACT));
        EXPECT_THAT(ids(manager.findPlacesByOwners({QStringLiteral("app")})), ElementsAre(FULL));
        const std::string everything = requests::find(9, 0);
        EXPECT_EQ(Placesd::exchange(everything, "places.external").substr(0, 12),
                  wire::message({wire::i32(0), wire::i32(269), wire::i32(0)}))
            << "private before and after";
        EXPECT_EQ(Placesd::code(requests::withId(requests::Type::RemovePlace, FULL), "places.external"),
                  orix_places_protocol::NoSuchPlace);
        EXPECT_THAT(ids(manager.findRecentPlaces(&error)), ElementsAre(USED, RECENT, CONTACT, FULL));
        EXPECT_EQ(error, Error::Success);
        QStringList terms;
        EXPECT_EQ(protocol.getRecentSearchTerms(terms, QString()), Error::Success);
        EXPECT_THAT(terms, ElementsAre(QString::fromUtf8("Zürich"), QStringLiteral("lake")));
    }

    Placesd service{{QStringLiteral("--gazetteer"), QString()}};
    PlaceManager manager;
    Protocol protocol;
};

} // namespace

TEST_P(MigrationTest, KeepsAllPlacesAndAllowsRemovingUnreadableOnes)
{
    service.kill();
    const QString database = put("places.db");
    service.start();
    expectPlacesAndTerms();
    EXPECT_EQ(manager.removePlace(UNREADABLE), Error::Success);
    const std::unique_ptr<Place> added = placeOf(HIGHEST, 0);
    PlacePrivate::privateFromPublic(added.get())->setId(PlaceId::UNDEFINED_PERSISTED_ID);
    EXPECT_EQ(manager.addPlace(added.get()), Error::Success);
    EXPECT_EQ(added->id(), HIGHEST + 1) << "no id is reused";
    service.stop();
    const std::string kept = database.toStdString() + ".version-" + std::to_string(GetParam().version);
    struct stat status = {};
    ASSERT_EQ(::stat(kept.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    SQLite::Database old(kept);
    EXPECT_NO_THROW(placesd::Store::requirePlaces(old));
    EXPECT_EQ(old.execAndGet("SELECT count(*) FROM place").getInt(), 5);
    EXPECT_EQ(old.execAndGet("PRAGMA user_version").getInt(), GetParam().version);
    SQLite::Database migrated(database.toStdString());
    EXPECT_NO_THROW(placesd::Store::requirePlaces(migrated));
    EXPECT_EQ(migrated.execAndGet("PRAGMA user_version").getInt(), 5);
}

TEST_P(MigrationTest, KeysOfOtherRulesAreRebuilt)
{
    service.kill();
    const QString database = put("places.db");
    service.start();
    service.stop();
    SQLite::Database(database.toStdString(), SQLite::OPEN_READWRITE)
        .exec("UPDATE place SET name_key = 'old' || id; UPDATE property SET value = value || 'old';"
              " UPDATE search_term SET key = 'old'; UPDATE key_rules SET version = '0';"
              " INSERT INTO text_index(rowid, text_key) SELECT id, 'unbeach old' FROM place");
    service.start();
    expectPlacesAndTerms();
    EXPECT_THAT(ids(manager.findPlaces(QStringLiteral("bech"))), ElementsAre(USED, RECENT, CONTACT));
    QStringList terms;
    EXPECT_EQ(protocol.getRecentSearchTerms(terms, QStringLiteral("zur")), Error::Success);
    EXPECT_EQ(terms.size(), 1);
    service.stop();
    SQLite::Database remade(database.toStdString());
    EXPECT_EQ(remade.execAndGet("SELECT count(*) FROM property WHERE value LIKE '%old'").getInt(), 0);
    EXPECT_GT(remade.execAndGet("SELECT count(*) FROM property").getInt(), 0);
    EXPECT_EQ(remade.execAndGet("SELECT count(*) FROM word WHERE term LIKE '%old'").getInt(), 0);
}

TEST_P(MigrationTest, ABackupOfAnEarlierVersionIsRestored)
{
    const QString backup = put("old.db");
    EXPECT_EQ(protocol.restore(backup.toStdString()), Error::RestoreFailed) << "a place cannot be read";
    SQLite::Database(backup.toStdString(), SQLite::OPEN_READWRITE)
        .exec("PRAGMA foreign_keys = ON; DELETE FROM place WHERE id = 5; PRAGMA page_size = 4096; VACUUM");
    ASSERT_EQ(protocol.restore(backup.toStdString()), Error::Success);
    expectPlacesAndTerms();
}

TEST_P(MigrationTest, IsRepairedWithoutItsDictionary)
{
    service.kill();
    const std::string old = put("old.db").toStdString();
    put("places.db");
    ASSERT_TRUE(QFile::remove(service.path("places.db")));
    if (GetParam().version >= 3)
        SQLite::Database(old, SQLite::OPEN_READWRITE).exec("DELETE FROM dictionary");
    const placesd::Repair::Report report = placesd::Repair::run(old, service.path("places.db").toStdString());
    EXPECT_EQ(report.places, 4U);
    EXPECT_THAT(report.losses, ElementsAre(testing::StartsWith("place 5 (")));
    service.start();
    expectPlacesAndTerms();
}

INSTANTIATE_TEST_SUITE_P(Versions, MigrationTest,
                         testing::Values(OldDatabase{"version-1.db", 1, 1795575373},
                                         OldDatabase{"version-2.db", 2, 1795575374},
                                         OldDatabase{"version-3.db", 3, 1795575374},
                                         OldDatabase{"version-4.db", 4, 1795575374}),
                         [](const auto &row) { return "From" + std::to_string(row.param.version); });
