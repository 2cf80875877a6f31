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

/// One connection to the database of places. Used by one thread at a time; the lock shared by all connections
/// serializes writers. Every function may throw SQLite::Exception; a write that throws changes nothing.
class Store
{
public:
    /// Opens the database; creates it or migrates its schema as needed.
    /// @param shared must outlive the connection. @param deadline for opening.
    Store(const std::string &path, StoreShared &shared, Deadline deadline = Deadline::max());
    ~Store();

    /// Work after the deadline is interrupted.
    void startRequest(Deadline deadline);
    /// Throws SQLite::Exception (interrupt) after the deadline; for work between statements.
    void requireTime() const;

    /// Behaviour of a write on a full disk.
    enum class OnFullDisk
    {
        Fail,
        MakeRoom,  ///< Empties the write-ahead log and retries.
        UseReserve ///< Also uses the reserve for removals.
    };
    /// Runs `work` as one transaction, which is on the disk on return. A false result or an exception rolls it back.
    /// Within another write, `work` runs in a savepoint of that transaction.
    bool write(const std::function<bool()> &work, OnFullDisk onFullDisk = OnFullDisk::MakeRoom);
    /// Whether a write is active. A grave error, such as a full disk, ends the transaction early.
    [[nodiscard]] bool isWriting() const;

    /// Enlarges the page cache, for a connection that writes often.
    void useWriterCache();
    /// Stores a new place and sets the ids of the place and its parts.
    /// @param guest user of the open channel who adds the place; unset for the owner's channel.
    void insert(vela::platform::places::Place &place, std::optional<uid_t> guest = {});
    /// Replaces `before`, which has the same id; new parts get ids.
    void update(vela::platform::places::Place &place, const vela::platform::places::Place &before);
    /// False when there is no such place.
    bool remove(qint64 id);
    /// The places in the recent bucket.
    std::vector<qint64> recentBucket();
    /// Removes a place from the recent bucket; deletes it when it is not saved.
    void takeFromRecentBucket(qint64 id);

    /// Values that decide who may read or change a stored place; unset when there is no such place.
    struct Standing
    {
        vela::system::SecurityPerimeter::Type perimeter;
        int persistenceMask;
        std::optional<uid_t> guest; ///< User of the open channel who added the place; unset for the owner's places.
        bool isPrivate;

        /// Whether the place is visible to the open channel.
        [[nodiscard]] bool isOpen() const;
    };
    std::optional<Standing> standingOf(qint64 id);
    /// A stored place in wire form, with its access values.
    struct StoredPlace
    {
        Standing standing;
        std::string fullRecord;
    };
    std::optional<StoredPlace> storedPlace(qint64 id);
    /// Whether a place was added through the open channel, and whether any was.
    bool isGuest(qint64 id);
    bool hasGuests();

    /// Usage by the open channel.
    struct Share
    {
        qint64 places;
        qint64 bytes; ///< Of uncompressed records and search data.
    };
    struct Shares
    {
        Share user;
        Share all;
    };
    /// Updated with every write; reads no place.
    Shares sharesOf(uid_t user);

    /// The stored place; null when there is none.
    std::unique_ptr<vela::platform::places::Place> place(qint64 id);
    /// The same; an unreadable place is logged and null.
    std::unique_ptr<vela::platform::places::Place> readablePlace(qint64 id);
    /// The record of a place in wire form; empty when there is no such place.
    std::string storedRecord(qint64 id, bool headerOnly);
    /// The same; an unreadable record is logged and empty.
    std::string readableRecord(qint64 id, bool headerOnly);
    /// The key of all texts of a place, see textKeyOf(); empty for an unreadable one.
    std::string textKey(qint64 id);

    /// Adds a term to the recent search terms, unless it is empty.
    void rememberTerm(const QString &term);
    /// The recent terms with a prefix, ignoring case and accents; newest first.
    QStringList recentTerms(const QString &prefix);

    /// Throws std::runtime_error when a database does not have the tables of this or an older placesd.
    static void requirePlaces(SQLite::Database &database);
    /// Checks pages, see checkPagesOf(), and all content including each record. `report` may throw.
    void checkPages(const ReportProblem &report);
    void check(const ReportProblem &report);
    /// Makes sure that new ids were never used in `other`.
    void keepIdsOf(Store &other);
    /// Compresses all records as in `other`: the dictionary of a database in use never changes.
    void packLike(Store &other);
    /// Replaces the content of `other` by the content of this store, in one write.
    void copyOver(Store &other);

    // For a repaired database.

    /// Stores a place with its own ids, which must be unused.
    void keep(const vela::platform::places::Place &place, std::optional<uid_t> guest);
    /// Makes sure that new ids are higher than these.
    void raiseLastIds(qint64 place, qint64 location, qint64 auxiliary);

    // Find the stored place that equals a place of a contact or provider. Only places of the owner's channel are
    // considered; with `isOpen` only those visible to the open channel.

    /// The stored place that equals a candidate; -1 for none. A suggestion equals none.
    qint64 storedIdOf(const vela::platform::places::Place &candidate, bool isOpen);
    /// The stored places of a type by the keys of their records, see originKey(); unset when there are more than
    /// `most`.
    std::optional<QHash<QString, qint64>> storedOrigins(const QString &type, qint64 most, bool isOpen);
    /// The id of the stored place with a record of this type and external id; -1 when there is none.
    qint64 idOf(const QString &externalId, const QString &type, bool isOpen);

    // For finds.

    /// A snapshot of the database for several statements, until the result is destroyed.
    std::unique_ptr<SQLite::Transaction> snapshot();
    StatementPool &statements() { return m_statements; }
    Facets &facets() { return m_facets; }
    /// The words of all texts. The first call in a process reads them.
    const CorrectionSource &vocabulary();
    /// Reads the words again, without those of removed places. Writers wait for its start only.
    void rereadVocabulary();
    /// The number of stored places with any of these bits in the persistence mask. Reads no place.
    qint64 placeCount(int persistenceBits);

private:
    void open();
    /// Throws SQLite::Exception (corrupt) after damage was found.
    void requireUndamaged() const;
    /// Call it for a place that cannot be read: throws the error again unless other places can still be read.
    void skipUnreadable(qint64 id, const SQLite::Exception &error);
    bool writePart(const std::function<bool()> &work);
    bool transact(const std::function<bool()> &work);
    bool transactWithRoomMade(const std::function<bool()> &work, bool isRemoval);
    /// Throws SQLite::Exception (full) when the reserve is too small for removals.
    void requireReserve();
    /// Extends the database file for new pages, so that the write-ahead log can be moved there even on a full disk.
    void takeRoom(qint64 pages);
    qint64 numberOf(const char *pragma);
    std::vector<std::string> storedWords();
    void migrate();
    void keepOldVersion(int version);
    void makeTables();
    void moveFromOldVersion();
    void moveOldPlaces();
    /// Whether the keys were built by the current rules.
    bool hasCurrentKeys();
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
    /// Writes the row of a place, by INSERT_PLACE or UPDATE_PLACE, and its search data.
    void put(const vela::platform::places::Place &place, const char *sql, std::optional<uid_t> guest = {});
    /// Adds a place to the list of a facet, if its kind has lists.
    void listFacet(FacetKind kind, qint64 number, const vela::platform::places::PlacePrivate &place);
    void putRow(const vela::platform::places::PlacePrivate &place, bool isRoom, const std::string &facets,
                const char *sql);
    void putRecords(qint64 id, const std::string &fullRecord, const std::string &header);
    /// Counts the facets of a place and returns their numbers in order.
    std::vector<qint64> addFacets(const IndexEntries &entries);
    /// Adds search data in addition to the row.
    /// @param numbers of the facets.
    void putKeys(qint64 id, const IndexEntries &entries, const std::vector<qint64> &numbers);
    /// Deletes search data in addition to the row. @param place null for an unreadable one.
    void deleteEntries(qint64 id, const vela::platform::places::Place *place);
    void deleteFacets(qint64 id);
    std::string unpack(const SQLite::Column &column);
    /// Executes a named statement with bound values.
    template <typename... Values>
    int execute(const char *sql, const Values &...values)
    {
        const auto row = m_statements.take(sql);
        bindEach(*row, values...);
        return row->exec();
    }
    static int interruptAfterDeadline(void *store);

    SQLite::Database m_database;
    StoreShared &m_shared;
    StatementPool m_statements;
    Facets m_facets;
    std::unique_ptr<RecordCompressor> m_records;
    Deadline m_deadline;
};

} // namespace placesd
