// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Store.h"

#include "Limits.h"
#include "places/Tags.h"
#include "requests/PlaceRules.h"
#include "store/IndexEntries.h"
#include "store/Records.h"
#include "store/StatementPool.h"
#include "support/Files.h"
#include "support/Golden.h"
#include "support/RandomFind.h"

#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>

#include <sqlite3.h>

using namespace finds;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr uid_t GUEST = 7;
constexpr uid_t OTHER_GUEST = 8;

PlacePrivate &dataOf(Place &place)
{
    return *PlacePrivate::privateFromPublic(&place);
}

/// A random place in the form of a request.
std::shared_ptr<Place> storable(Chance &chance, qint64 id = PlaceId::UNDEFINED_PERSISTED_ID)
{
    std::shared_ptr<Place> place = chance.place(id);
    dropUnstoredParts(dataOf(*place));
    return place;
}

class StoreTest : public testing::Test
{
protected:
    std::string path(const char *name) const { return folder.filePath(QLatin1String(name)).toStdString(); }

    /// All rows that are derived from the places, with the texts of facets instead of their numbers.
    static std::vector<std::string> rowsOf(const std::string &database)
    {
        std::vector<std::string> rows;
        SQLite::Database connection(database);
        for (const char *sql :
             {"SELECT id, name_key, sort_key, favorite, contact, room, perimeter, mask, usage_count, last_used,"
              " created, updated, latitude, longitude FROM place ORDER BY id",
              "SELECT kind, text, places FROM facet ORDER BY 1, 2",
              "SELECT text, usage_count, last_used, place FROM place_of_facet JOIN facet ON facet = id"
              " ORDER BY kind, text, 2, 3, 4",
              "SELECT text, value, place FROM property JOIN facet ON key = id ORDER BY 1, 2, 3",
              "SELECT type, external_id, provider, place FROM origin ORDER BY 1, 2, 3, 4",
              "SELECT * FROM guest ORDER BY 1", "SELECT * FROM guest_share ORDER BY 1", "SELECT term FROM word",
              "SELECT id, north, east FROM position ORDER BY id", "SELECT place FROM record ORDER BY place"}) {
            SQLite::Statement row(connection, sql);
            while (row.executeStep()) {
                rows.emplace_back();
                for (int i = 0; i < row.getColumnCount(); ++i)
                    rows.back() += row.getColumn(i).getString() + "|";
            }
        }
        return rows;
    }

    QTemporaryDir folder;
    StoreShared shared;
    Store store{path("places.db"), shared};
};

} // namespace

TEST_F(StoreTest, EqualsAFreshDatabaseWithTheSamePlaces)
{
    Chance chance(3);
    std::map<qint64, std::pair<std::shared_ptr<Place>, std::optional<uid_t>>> kept;
    for (int round = 0; round < 4; ++round) {
        store.write([&] {
            for (int i = 0; i < 60; ++i) {
                const auto place = storable(chance);
                const std::optional<uid_t> guests[] = {{}, GUEST, OTHER_GUEST};
                const std::optional<uid_t> guest = chance.of(guests);
                store.insert(*place, guest);
                kept[place->id()] = {place, guest};
            }
            for (int i = 0; i < 30; ++i) {
                const qint64 id = chance.of(kept).first;
                const std::unique_ptr<Place> before = store.place(id);
                kept[id].first = storable(chance, id);
                store.update(*kept[id].first, *before);
            }
            for (int i = 0; i < 40; ++i) {
                const qint64 id = chance.of(kept).first;
                PlacePrivate &data = dataOf(*kept[id].first);
                const int left = data.persistenceMask() & ~PlacePrivate::InRecentBucket;
                if (i < 20 && left != 0) {
                    store.takeFromRecentBucket(id);
                    data.setPersistenceMask(left);
                    continue;
                }
                if (i < 20)
                    store.takeFromRecentBucket(id);
                else
                    EXPECT_TRUE(store.remove(id));
                kept.erase(id);
            }
            EXPECT_FALSE(store.remove(99999));
            return true;
        });
    }
    store.check([](const std::string &problem, qint64 place) { ADD_FAILURE() << problem << place; });
    StoreShared others;
    Store fresh(path("fresh.db"), others);
    fresh.write([&] {
        for (const auto &[id, known] : kept) {
            EXPECT_EQ(store.storedRecord(id, false), fullRecordOf(*known.first)) << id;
            EXPECT_EQ(store.storedRecord(id, true), headerOf(*known.first)) << id;
            fresh.keep(*known.first, known.second);
        }
        return true;
    });
    EXPECT_EQ(rowsOf(path("places.db")), rowsOf(path("fresh.db")));
    std::vector<qint64> bucket;
    for (const auto &[id, known] : kept) {
        if (dataOf(*known.first).isInRecentBucket())
            bucket.push_back(id);
    }
    EXPECT_THAT(store.recentBucket(), testing::UnorderedElementsAreArray(bucket));
    EXPECT_EQ(store.placeCount(PlacePrivate::InRecentBucket), static_cast<qint64>(bucket.size()));
    EXPECT_EQ(store.placeCount(PlacePrivate::RECENT_AND_SAVED), static_cast<qint64>(kept.size()));
    store.write([&] {
        for (const auto &known : kept)
            store.remove(known.first);
        return true;
    });
    EXPECT_THAT(rowsOf(path("places.db")), IsEmpty());
}

TEST_F(StoreTest, EachPartHasAnIdOfItsOwn)
{
    sample::FullPlace place(-1);
    const auto add = [&](Place &added) { ASSERT_TRUE(store.write([&] { return store.insert(added), true; })); };
    add(place);
    EXPECT_EQ(place.id(), 1);
    EXPECT_EQ(place.location(0).id(), 1) << "an id of the request is not used for a stored part";
    EXPECT_EQ(place.data().auxiliaryData()[0].id(), 1);

    Place changed;
    dataOf(changed) = place.data();
    for (int i = 0; i < 2; ++i) {
        dataOf(changed).addLocation(place.location(0));
        dataOf(changed).addAuxiliaryData(place.data().auxiliaryData()[0]);
    }
    ASSERT_TRUE(store.write([&] { return store.update(changed, place), true; }));
    std::vector<qint64> ids;
    for (int i = 0; i < 3; ++i) {
        ids.push_back(changed.location(i).id());
        ids.push_back(dataOf(changed).auxiliaryData()[i].id());
    }
    EXPECT_THAT(ids, ElementsAre(1, 1, 2, 2, 3, 3)) << "one part keeps the id, the copies get new ids";
    ASSERT_TRUE(store.write([&] { return store.remove(1); }));
    sample::FullPlace next(-1);
    add(next);
    EXPECT_EQ(next.id(), 2);
    EXPECT_EQ(next.location(0).id(), 4);
    EXPECT_EQ(next.data().auxiliaryData()[0].id(), 4);
}

TEST_F(StoreTest, RecentTermsAreListedByPrefixNewestFirst)
{
    const auto remember = [&](const QString &term) { store.write([&] { return store.rememberTerm(term), true; }); };
    for (const char *term : {"cafe", "Zürich", "Café noir", "", "cafe"})
        remember(QString::fromUtf8(term));
    EXPECT_THAT(store.recentTerms(QStringLiteral("CAF\u00C9")),
                ElementsAre(QStringLiteral("cafe"), QString::fromUtf8("Café noir")));
    EXPECT_EQ(store.recentTerms(QString()).size(), 3);
    for (int i = 0; i < limits::SEARCH_TERMS - 2; ++i)
        remember(QString::number(i));
    EXPECT_EQ(store.recentTerms(QString()).size(), limits::SEARCH_TERMS);
    EXPECT_EQ(store.recentTerms(QString()).last(), QString::fromUtf8("Café noir")) << "the oldest one is dropped";
}

/// A place of a contact or provider is replaced by the owner's stored place with the same origin, but not on the open
/// channel.
TEST_F(StoreTest, APlaceOfASourceIsFoundByItsOrigin)
{
    const struct
    {
        const char *externalId;
        std::optional<uid_t> guest;
        bool isPrivate;
        int mask;
        bool isFound;
        bool isFoundOpenly;
    } cases[] = {
        {"guest's", GUEST, false, 2, false, false}, {"saved", {}, false, 2, true, true},
        {"saved", {}, false, 2, true, true},        {"private", {}, true, 2, true, false},
        {"picked", {}, false, 1, true, false},      {"none", {}, false, 2, false, false},
        {"", {}, false, 2, false, false},
    };
    std::vector<std::unique_ptr<sample::FullPlace>> places;
    std::map<std::string, qint64> first;
    for (const auto &row : cases) {
        places.push_back(std::make_unique<sample::FullPlace>(-1));
        PlacePrivate &data = places.back()->data();
        data.setPrivate(row.isPrivate);
        data.setPersistenceMask(row.mask);
        data.m_auxiliaryData[0].setExternalId(QString::fromUtf8(row.externalId));
        if (row.externalId != std::string("none"))
            store.write([&] { return store.insert(*places.back(), row.guest), true; });
        first.emplace(row.externalId, places.back()->id());
    }
    const QString poi = AuxiliaryData::TypePointOfInterest;
    for (std::size_t i = 0; i < places.size(); ++i) {
        for (const bool isOpen : {false, true}) {
            const bool isFound = isOpen ? cases[i].isFoundOpenly : cases[i].isFound;
            const qint64 id = isFound ? first.at(cases[i].externalId) : -1;
            SCOPED_TRACE(cases[i].externalId);
            AuxiliaryData &record = dataOf(*places[i]).m_auxiliaryData[0];
            EXPECT_EQ(store.storedIdOf(*places[i], isOpen), id) << isOpen;
            EXPECT_EQ(store.storedOrigins(poi, 9, isOpen)->value(originKey(record), -1), id) << isOpen;
            EXPECT_EQ(store.idOf(record.externalId(), poi, isOpen), id) << isOpen;
            EXPECT_EQ(store.idOf(record.externalId(), AuxiliaryData::TypeContact, isOpen), -1);
            Place suggested;
            dataOf(suggested) = dataOf(*places[i]);
            suggested.addTag(QLatin1String(InternalTags::Suggestion));
            EXPECT_EQ(store.storedIdOf(suggested, isOpen), -1);
        }
    }
    EXPECT_FALSE(store.storedOrigins(poi, 5, false)) << "six places have a record of this type";
    EXPECT_TRUE(store.storedOrigins(poi, 6, false));
    EXPECT_TRUE(store.storedOrigins(AuxiliaryData::TypeContact, 0, false)->isEmpty());
    EXPECT_TRUE(store.isGuest(1));
    EXPECT_FALSE(store.isGuest(2));
    EXPECT_TRUE(store.hasGuests());
    const Store::Shares shares = store.sharesOf(GUEST);
    EXPECT_EQ(shares.user.places, 1);
    EXPECT_EQ(shares.all.bytes, shares.user.bytes);
    EXPECT_EQ(store.sharesOf(OTHER_GUEST).user.places, 0);
    const IndexEntries entries = IndexEntries::of(dataOf(*places[0]));
    EXPECT_EQ(
        shares.user.bytes,
        static_cast<qint64>(fullRecordOf(*places[0]).size() + headerOf(*places[0]).size()) + entries.textKey.size()
            + 64 * static_cast<qint64>(entries.facets.size() + entries.properties.size() + entries.origins.size()));
}

TEST_F(StoreTest, AWriteIsAtomic)
{
    const auto remember = [&](const char *term, bool isDone) {
        return [&, term, isDone] { return store.rememberTerm(QLatin1String(term)), isDone; };
    };
    EXPECT_TRUE(store.write(remember("one", true)));
    EXPECT_FALSE(store.write(remember("two", false)));
    EXPECT_THROW(
        store.write([&] { return remember("three", true)(), throw SQLite::Exception("as told", SQLITE_BUSY), true; }),
        SQLite::Exception);
    EXPECT_FALSE(store.isWriting());
    // A failed part of a write is rolled back alone; without room, the whole write.
    EXPECT_TRUE(store.write([&] {
        EXPECT_TRUE(store.isWriting());
        EXPECT_TRUE(store.write(remember("four", true)));
        EXPECT_FALSE(store.write(remember("five", false)));
        EXPECT_THROW(store.write([]() -> bool { throw SQLite::Exception("as told", SQLITE_BUSY); }), SQLite::Exception);
        EXPECT_TRUE(store.isWriting());
        return true;
    }));
    EXPECT_FALSE(store.write([&] {
        EXPECT_TRUE(store.write(remember("six", true)));
        EXPECT_THROW(store.write([]() -> bool { throw SQLite::Exception("as told", SQLITE_FULL); }), SQLite::Exception);
        EXPECT_FALSE(store.isWriting());
        return false;
    }));
    EXPECT_THAT(store.recentTerms(QString()), ElementsAre(QStringLiteral("four"), QStringLiteral("one")));

    store.startRequest(Clock::now() - std::chrono::seconds(1));
    EXPECT_THROW(store.requireTime(), SQLite::Exception);
    {
        const std::lock_guard<std::timed_mutex> others(shared.writeLock);
        EXPECT_THROW(store.write(remember("late", true)), SQLite::Exception) << "others write";
    }
    store.startRequest(Deadline::max());
    EXPECT_NO_THROW(store.requireTime());
    EXPECT_EQ(store.recentTerms(QString()).size(), 2);
}

TEST(FacetNumbers, ArePackedAndReadUpToTheFirstInvalidOne)
{
    const std::vector<qint64> numbers = {0, 1, 127, 128, 129, 16383, 16384, qint64{1} << 40, (qint64{1} << 62) + 5};
    const std::string packed = FacetNumbers::pack({numbers.rbegin(), numbers.rend()});
    EXPECT_EQ(FacetNumbers::unpack(packed), numbers);
    EXPECT_EQ(packed.substr(0, 5), std::string("\x00\x01\x7F\x80\x01", 5));
    for (const qint64 number : numbers)
        EXPECT_TRUE(FacetNumbers::containAny(packed, {number, number + 2})) << number;
    EXPECT_FALSE(FacetNumbers::containAny(packed, {2, 126, 130, 16385}));
    EXPECT_THAT(FacetNumbers::unpack("\x05\x80"), ElementsAre(5));
    EXPECT_THAT(FacetNumbers::unpack("\x05" + std::string(12, '\xFF')), ElementsAre(5))
        << "no number has so many bytes";
}

TEST(IndexEntries, ContainAllTextsAndTheStartOfValues)
{
    sample::FullPlace place;
    PlacePrivate &data = place.data();
    AuxiliaryData other(AuxiliaryData::TypeCalendar);
    other.addProperty(QStringLiteral("alt_name"), QStringLiteral("Seehaus; Lac"));
    other.addProperty(QStringLiteral("K\u00EFnd"), QStringLiteral("R\u00F6om"));
    data.addAuxiliaryData(other);
    data.m_auxiliaryData[0].addProperty(QStringLiteral("category"), QStringLiteral("hotel"));
    const IndexEntries entries = IndexEntries::of(data);
    const QStringList texts = entries.textKey.split(QLatin1Char(KEY_END));
    EXPECT_EQ(texts.join(QLatin1Char('|')).toStdString(),
              "cafe|by the lake|lakeside|1|quai 1|b|c|geneve|ge|suisse|ch|1201|hotel|seehaus|lac|");
    EXPECT_TRUE(entries.isRoom);
    std::vector<std::string> facets;
    for (const Facet &facet : entries.facets)
        facets.push_back(std::to_string(static_cast<int>(facet.kind)) + facet.text.toStdString());
    EXPECT_THAT(facets,
                testing::UnorderedElementsAre("1app", "53", "2lbs-favorite", "3poi", "3calendar", "4room", "4private",
                                              "6kind", "6alt_name", "6category", "6phonenumber", "6emailaddress"));
    EXPECT_EQ(entries.origins.size(), 1U) << "of records with an external id";

    // After a prefix of 64 letters nothing is kept, except marks that compose with the last letter.
    const QString letters(63, QLatin1Char('v'));
    const QString emoji = QStringLiteral("\U0001F355");
    EXPECT_EQ(propertyPrefix(letters + emoji + QLatin1Char('x')), letters + emoji);
    EXPECT_EQ(propertyPrefix(letters), letters);
    AuxiliaryData longOne(QStringLiteral("x"));
    longOne.addProperty(QStringLiteral("k"), QStringLiteral("\u0301").repeated(2000) + letters + QStringLiteral("VW"));
    data.m_auxiliaryData = {longOne};
    EXPECT_EQ(IndexEntries::of(data).properties.at(0).value, letters + QLatin1Char('v'));
    EXPECT_FALSE(IndexEntries::of(data).isRoom);

    // Each text has a limit, and so do all texts together.
    data.setDescription(QString(limits::TEXT_LENGTH - 1, QLatin1Char('d')) + QStringLiteral("ef"));
    EXPECT_THAT(textKeyOf(data).toStdString(), testing::HasSubstr("de" + std::string(1, KEY_END)));
    data.m_aliases.clear();
    for (int i = 10; i < 30; ++i)
        data.addAlias(QString::number(i) + QString(limits::TEXT_LENGTH - 2, QLatin1Char('a')));
    EXPECT_THAT(textKeyOf(data).toStdString(), testing::HasSubstr("\x1F"
                                                                  "24a"));
    EXPECT_THAT(textKeyOf(data).toStdString(), testing::Not(testing::HasSubstr("\x1F"
                                                                               "25a")));
}

TEST(StatementPool, KeepsNoBoundValuesAndBoundedMemory)
{
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    StatementPool pool(database);
    std::vector<std::string> texts;
    for (int i = 0; i < 2000; ++i)
        texts.push_back("SELECT ?1, " + std::to_string(i));
    for (const std::string &text : texts) {
        const auto row = pool.take(text.c_str());
        row->bind(1, std::string(10000, 'x'));
        row->executeStep();
    }
    std::size_t bytes = 0;
    for (sqlite3_stmt *kept = nullptr; (kept = sqlite3_next_stmt(database.getHandle(), kept)) != nullptr;)
        bytes += static_cast<std::size_t>(sqlite3_stmt_status(kept, SQLITE_STMTSTATUS_MEMUSED, 0));
    EXPECT_LE(bytes, limits::IDLE_STATEMENT_MEMORY);
    EXPECT_GT(bytes, 0U);
}

/// Each of these faults is found by exactly one check.
TEST_F(StoreTest, ACheckNamesInconsistentTables)
{
    sample::FullPlace place(-1);
    ASSERT_TRUE(store.write([&] { return store.insert(place, GUEST), true; }));
    SQLite::Database(path("places.db"), SQLite::OPEN_READWRITE).exec("PRAGMA wal_checkpoint(TRUNCATE)");
    const QString sound = folder.filePath(QStringLiteral("places.db"));
    const QString broken = folder.filePath(QStringLiteral("broken.db"));
    for (const auto &[sql, problem] : golden::rows<2>("service/data/damage.txt", "store")) {
        std::vector<std::string> found;
        files::write(broken, files::bytesOf(sound));
        SQLite::Database(broken.toStdString(), SQLite::OPEN_READWRITE).exec(sql);
        StoreShared unshared;
        Store(broken.toStdString(), unshared).check([&](const std::string &each, qint64) { found.push_back(each); });
        EXPECT_EQ(found.empty(), sql.empty()) << sql;
        EXPECT_THAT(testing::PrintToString(found), testing::HasSubstr(problem)) << sql;
    }
}
