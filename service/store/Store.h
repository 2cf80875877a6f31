// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "store/Check.h"
#include "store/Facets.h"
#include "store/RecordCompressor.h"
#include "store/SqlFunctions.h"
#include "store/StatementPool.h"
#include "store/StoreShared.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <vela/system/SecurityPerimeter.h>

#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vela::platform::places
{
class Place;
class PlacePrivate;
} // namespace vela::platform::places

namespace placesd
{

struct IndexEntries;

/// One connection to the database of places. It belongs to one thread at a time; writers take turns by the lock that
/// all connections share. Every function may throw SQLite::Exception, and a write that throws has changed nothing.
class Store
{
public:
    /// Opens the database, making it or bringing its schema up to date if need be.
    /// @param shared outlives the connection. @param deadline of the opening.
    Store(const std::string &path, StoreShared &shared, Deadline deadline = Deadline::max());
    ~Store();

    /// Work that goes on past the deadline is interrupted.
    void startRequest(Deadline deadline);
    /// Throws SQLite::Exception (interrupt) once the deadline has passed: for work between two statements.
    void requireTime() const;

    /// What a write does on a full disk.
    enum class OnFullDisk
    {
        Fail,
        MakeRoom,  ///< Empties the write-ahead log and runs the work once more.
        UseReserve ///< The same, with the room that is kept for removals.
    };
    /// Runs `work` as one transaction, which is on the disk when this returns. A false result, like an exception, takes
    /// everything back. Within the work of another write, `work` runs in a savepoint of that transaction.
    bool write(const std::function<bool()> &work, OnFullDisk onFullDisk = OnFullDisk::MakeRoom);
    /// Whether a write is under way. A grave error, such as a full disk, ends its transaction before its work is done.
    [[nodiscard]] bool isWriting() const;

    /// Keeps more pages in memory, for a connection that writes often.
    void useWriterCache();
    /// Stores a new place and gives it and its parts their ids.
    /// @param guest the user who adds it by the open channel; unset for the owner's channel.
    void insert(vela::platform::places::Place &place, std::optional<uid_t> guest = {});
    /// Stores a place in place of `before`, which has the same id; new parts get ids.
    void update(vela::platform::places::Place &place, const vela::platform::places::Place &before);
    /// False when there is no such place.
    bool remove(qint64 id);
    /// The places in the recent bucket.
    std::vector<qint64> recentBucket();
    /// Takes a place out of the recent bucket and removes it when nothing else keeps it.
    void takeFromRecentBucket(qint64 id);

    /// What decides who may see or change a stored place; nothing when there is no such place.
    struct Standing
    {
        vela::system::SecurityPerimeter::Type perimeter;
        int persistenceMask;
        std::optional<uid_t> guest; ///< The user who added it by the open channel; unset for the owner's places.
        bool isPrivate;

        /// Whether the open channel knows it.
        [[nodiscard]] bool isOpen() const;
    };
    std::optional<Standing> standingOf(qint64 id);
    /// A stored place as it is sent, and who may see it.
    struct StoredPlace
    {
        Standing standing;
        std::string fullRecord;
    };
    std::optional<StoredPlace> storedPlace(qint64 id);
    /// Whether a place came by the open channel, and whether any did.
    bool isGuest(qint64 id);
    bool hasGuests();

    /// What came by the open channel.
    struct Share
    {
        qint64 places;
        qint64 bytes; ///< Of records, not packed, and of what the places are found by.
    };
    struct Shares
    {
        Share user;
        Share all;
    };
    /// Counted with every write; reads no place.
    Shares sharesOf(uid_t user);

    /// The stored place; null when there is none.
    std::unique_ptr<vela::platform::places::Place> place(qint64 id);
    /// The same; null, and a message in the log, also for a place that cannot be read.
    std::unique_ptr<vela::platform::places::Place> readablePlace(qint64 id);
    /// The record of a place, as it goes into a reply; empty when there is no such place.
    std::string storedRecord(qint64 id, bool headerOnly);
    /// The same; empty, and a message in the log, also for one that cannot be read.
    std::string readableRecord(qint64 id, bool headerOnly);
    /// The key of all texts of a place, see textKeyOf(); empty for one that cannot be read.
    std::string textKey(qint64 id);

    /// Keeps a term among the recent ones. An empty term is not kept.
    void rememberTerm(const QString &term);
    /// The recent terms that start with `prefix`, whatever its case and accents; newest first.
    QStringList recentTerms(const QString &prefix);

    /// Throws std::runtime_error when the tables of a database are not those that a placesd of some age made.
    static void requirePlaces(SQLite::Database &database);
    /// Look for damage: of pages, see checkPagesOf(), and of all above them, each record included. `report` may throw.
    void checkPages(const ReportProblem &report);
    void check(const ReportProblem &report);
    /// Lets nothing that is stored from now on have an id that was in use in `other`.
    void keepIdsOf(Store &other);
    /// Packs all records as those of `other` are: the dictionary of a database in use never changes.
    void packLike(Store &other);
    /// Replaces everything that is stored in `other` by what is stored here, as one write.
    void copyOver(Store &other);

    // For a database that is made of what is left of another.

    /// Stores a place with the ids that it has; no other place has them.
    void keep(const vela::platform::places::Place &place, std::optional<uid_t> guest);
    /// Lets nothing that is stored from now on have an id up to these.
    void raiseLastIds(qint64 place, qint64 location, qint64 auxiliary);

    // What a contact or a provider gives can be stored. Only places that the owner's channel added are looked at, and
    // with `isOpen` only those that the open channel knows.

    /// The stored place that a candidate is; -1 for none. A suggestion is none, whatever it leads to.
    qint64 storedIdOf(const vela::platform::places::Place &candidate, bool isOpen);
    /// The stored places of a type by the keys of their records, see originKey(); unset when there are more than
    /// `most`.
    std::optional<QHash<QString, qint64>> storedOrigins(const QString &type, qint64 most, bool isOpen);
    /// The id of the stored place that has a record of this type and external id; -1 when there is none.
    qint64 idOf(const QString &externalId, const QString &type, bool isOpen);

    // For finds.

    /// One state of the database for several statements, until the result ends.
    std::unique_ptr<SQLite::Transaction> snapshot();
    StatementPool &statements() { return m_statements; }
    Facets &facets() { return m_facets; }
    /// The words of all texts. The first call of a process reads them.
    const CorrectionSource &vocabulary();
    /// Reads the words again, without those of places that are gone. Writers wait for its start, nobody for the rest.
    void rereadVocabulary();
    /// The number of stored places that have any of these bits in their persistence mask. Reads no place.
    qint64 placeCount(int persistenceBits);

private:
    void open();
    /// Throws SQLite::Exception (corrupt) once damage was seen.
    void requireUndamaged() const;
    /// To be called where a place could not be read: throws the error anew unless others can be read all the same.
    void skipUnreadable(qint64 id, const SQLite::Exception &error);
    bool writePart(const std::function<bool()> &work);
    bool transact(const std::function<bool()> &work);
    bool transactWithRoomMade(const std::function<bool()> &work, bool isRemoval);
    /// Throws SQLite::Exception (full) when removals could need room that is not kept.
    void requireReserve();
    /// Takes room in the database file for pages, so that the write-ahead log can be moved there on a full disk, too.
    void takeRoom(qint64 pages);
    qint64 numberOf(const char *pragma);
    std::vector<std::string> storedWords();
    void migrate();
    void keepOldVersion(int version);
    void makeTables();
    void moveFromOldVersion();
    void moveOldPlaces();
    /// Whether the keys were made by the rules that hold now.
    bool hasKeysOfToday();
    void keepKeyRules();
    void remakeKeys(int version);
    void remakeKeysOf(const vela::platform::places::Place &place);
    void keepUnreadable(SQLite::Statement &old);
    void checkRecords(const ReportProblem &report);
    void openRecords();
    std::string dictionary();

    struct Ids
    {
        qint64 place;
        qint64 location;
        qint64 auxiliary;
    };
    Ids takeIds(int places, int locations, int records);
    void giveIds(vela::platform::places::Place &place, bool isNew);
    /// Writes the row of a place, by INSERT_PLACE or UPDATE_PLACE, and all that goes with it.
    void put(const vela::platform::places::Place &place, const char *sql, std::optional<uid_t> guest = {});
    /// Adds a place to the list of a facet, if its kind has lists.
    void listFacet(FacetKind kind, qint64 number, const vela::platform::places::PlacePrivate &place);
    void putRow(const vela::platform::places::PlacePrivate &place, bool isRoom, const std::string &facets,
                const char *sql);
    void putRecords(qint64 id, const std::string &fullRecord, const std::string &header);
    /// Counts the facets of a place and gives their numbers, in their order.
    std::vector<qint64> addFacets(const IndexEntries &entries);
    /// Adds what a place is found by under the keys of its texts, besides its row.
    /// @param numbers of the facets.
    void putKeys(qint64 id, const IndexEntries &entries, const std::vector<qint64> &numbers);
    /// Deletes what a place is found by besides its row. @param place null for one that cannot be read.
    void deleteEntries(qint64 id, const vela::platform::places::Place *place);
    void deleteFacets(qint64 id);
    std::string unpack(const SQLite::Column &column);
    /// Executes a named statement with values bound to it.
    template <typename... Values>
    int execute(const char *sql, const Values &...values)
    {
        const auto row = m_statements.take(sql);
        bindEach(*row, values...);
        return row->exec();
    }
    static int interruptLate(void *store);

    SQLite::Database m_database;
    StoreShared &m_shared;
    StatementPool m_statements;
    Facets m_facets;
    std::unique_ptr<RecordCompressor> m_records;
    Deadline m_deadline;
};

} // namespace placesd
