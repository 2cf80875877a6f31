// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Store.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "Limits.h"
#include "Log.h"
#include "model/InternalTags.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "places/SearchOperator.h"
#include "places/Tags.h"
#include "store/IndexEntries.h"
#include "store/Nearest.h"
#include "store/Records.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"
#include "store/StoredRow.h"
#include "store/UnreadablePlace.h"
#include "text/TextKeys.h"

#include <QtCore/QSet>

#include <algorithm>

#include <sqlite3.h>

namespace placesd
{

using namespace vela::platform::places;

namespace
{

/// Id of a part that is not stored yet.
constexpr qint64 NO_ID = PlaceId::UNDEFINED_PERSISTED_ID;
/// Virtual machine steps between two checks of the deadline.
constexpr int STEPS_PER_CHECK = 10000;
/// Database files grow in multiples of this, in bytes.
constexpr int FILE_UNIT = 4096;
/// Maximum wait for a writer in another process.
constexpr int BUSY_TIMEOUT_MS = 5000;

/// A part keeps an id that it had in the stored place, once each; all other parts get new ids.
void resetForeignIds(Place &place, const Place &before)
{
    QSet<qint64> locations;
    QSet<qint64> records;
    for (const Location &location : PlacePrivate::privateFromPublic(&before)->locations())
        locations.insert(location.id());
    for (const AuxiliaryData &record : PlacePrivate::privateFromPublic(&before)->auxiliaryData())
        records.insert(record.id());

    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    for (Location &location : data.m_locations) {
        if (!locations.remove(location.id()))
            LocationPrivate::privateFromPublic(&location)->setId(NO_ID);
    }
    for (AuxiliaryData &record : data.m_auxiliaryData) {
        if (!records.remove(record.id()))
            AuxiliaryDataPrivate::fromPublic(record)->setId(NO_ID);
    }
}

/// A savepoint, rolled back unless it is kept. Its statements are prepared in advance.
class Savepoint
{
public:
    explicit Savepoint(StatementPool &statements)
        : m_rollback(statements.take(sql::ROLLBACK_TO_SAVEPOINT))
        , m_release(statements.take(sql::RELEASE_SAVEPOINT))
    {
        statements.take(sql::SAVEPOINT)->exec();
    }
    Savepoint(const Savepoint &) = delete;
    Savepoint &operator=(const Savepoint &) = delete;
    ~Savepoint()
    {
        if (m_isKept)
            return;
        // A grave error has already ended the transaction.
        m_rollback->tryExecuteStep();
        m_release->tryExecuteStep();
    }

    void keep()
    {
        m_isKept = true;
        m_release->exec();
    }

private:
    StatementPool::Lease m_rollback;
    StatementPool::Lease m_release;
    bool m_isKept = false;
};

/// Reads the first columns of a row of `standing`.
Store::Standing readStanding(SQLite::Statement &row)
{
    const SQLite::Column user = row.getColumn(2);
    return {static_cast<vela::system::SecurityPerimeter::Type>(row.getColumn(0).getInt()), row.getColumn(1).getInt(),
            user.isNull() ? std::nullopt : std::optional(static_cast<uid_t>(user.getInt64())),
            row.getColumn(3).getInt() != 0};
}

/// Approximate size of a place in bytes: small index entries need more than their text.
qint64 sizeOf(const IndexEntries &entries, const std::string &fullRecord, const std::string &header)
{
    constexpr std::size_t ENTRY_SIZE = 64;
    const std::size_t count = entries.facets.size() + entries.properties.size() + entries.origins.size();
    return static_cast<qint64>(fullRecord.size() + header.size() + count * ENTRY_SIZE) + entries.textKey.size();
}

template <typename List>
int countWithoutId(const List &parts)
{
    return static_cast<int>(
        std::count_if(parts.begin(), parts.end(), [](const auto &part) { return part.id() == NO_ID; }));
}

} // namespace

Store::Store(const std::string &path, StoreShared &shared, Deadline deadline)
    : m_database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX, BUSY_TIMEOUT_MS)
    , m_shared(shared)
    , m_statements(m_database)
    , m_facets(m_statements)
    , m_deadline(deadline)
{
    harden(m_database);
    // The file grows only by takeRoom().
    int unit = FILE_UNIT;
    sqlite3_file_control(m_database.getHandle(), "main", SQLITE_FCNTL_CHUNK_SIZE, &unit);
    registerNearest(m_database);
    sqlite3_progress_handler(m_database.getHandle(), STEPS_PER_CHECK, interruptAfterDeadline, this);
    const std::lock_guard<std::timed_mutex> lock(m_shared.writeLock);
    try {
        open();
    } catch (const SQLite::Exception &error) {
        if (!isLackOfRoom(error) || !m_shared.reserve || !m_shared.reserve->release())
            throw;
        open();
    }
    if (m_shared.reserve && m_shared.reserve->fill() > 0)
        m_shared.reserve->report();
}

void Store::open()
{
    m_database.exec(sql::CONNECTION_SETTINGS);
    migrate();
    openRecords();
}

Store::~Store() = default;

void Store::startRequest(Deadline deadline)
{
    m_deadline = deadline;
}

void Store::requireTime() const
{
    if (hasPassed(m_deadline))
        throw SQLite::Exception("the request took too long", SQLITE_INTERRUPT);
}

int Store::interruptAfterDeadline(void *store)
{
    return hasPassed(static_cast<Store *>(store)->m_deadline);
}

/// All records of a database use the dictionary that is stored in it.
void Store::openRecords()
{
    m_records = std::make_unique<RecordCompressor>(dictionary());
}

std::string Store::dictionary()
{
    const auto row = m_statements.take(sql::SELECT_DICTIONARY);
    return row->executeStep() ? blobOf(row->getColumn(0)) : std::string();
}

bool Store::isWriting() const
{
    return sqlite3_txn_state(m_database.getHandle(), "main") == SQLITE_TXN_WRITE;
}

void Store::requireUndamaged() const
{
    if (m_shared.damage && m_shared.damage->isDamaged())
        throw SQLite::Exception("the database is damaged", SQLITE_CORRUPT);
}

bool Store::write(const std::function<bool()> &work, OnFullDisk onFullDisk)
{
    requireUndamaged();
    if (isWriting())
        return writePart(work);
    const std::unique_lock<std::timed_mutex> lock(m_shared.writeLock, m_deadline);
    if (!lock)
        throw SQLite::Exception("other writers took too long", SQLITE_BUSY);
    const bool isRemoval = onFullDisk == OnFullDisk::UseReserve;
    try {
        if (!isRemoval)
            requireReserve();
        return transact(work);
    } catch (const SQLite::Exception &error) {
        if (!isLackOfRoom(error) || !m_shared.reserve || onFullDisk == OnFullDisk::Fail)
            throw;
    }
    return transactWithRoomMade(work, isRemoval);
}

bool Store::writePart(const std::function<bool()> &work)
{
    try {
        Savepoint part(m_statements);
        const bool isDone = work();
        if (isDone)
            part.keep();
        return isDone;
    } catch (const SQLite::Exception &error) {
        // Other parts may have filled the disk, so each part must run alone.
        if (isLackOfRoom(error))
            m_database.tryExec("ROLLBACK");
        throw;
    }
}

bool Store::transact(const std::function<bool()> &work)
{
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    if (!work())
        return false;
    requireUndamaged(); // a part of the work may have found damage
    takeRoom(numberOf(sql::COUNT_PAGES));
    transaction.commit();
    m_shared.advanceVersion();
    return true;
}

/// The write-ahead log is empty before and after, so a removal returns the space of the reserve, except for pages by
/// which the file grows.
bool Store::transactWithRoomMade(const std::function<bool()> &work, bool isRemoval)
{
    struct Refill
    {
        Store &store;
        ~Refill()
        {
            store.m_database.tryExec(sql::EMPTY_LOG);
            store.m_shared.reserve->fill();
        }
    };
    m_shared.reserve->report();
    m_database.tryExec(sql::EMPTY_LOG);
    if (!isRemoval) {
        requireReserve();
        return transact(work);
    }
    const Refill refill{*this};
    m_shared.reserve->release();
    return transact(work);
}

/// Free pages of the file count as reserve: a removal grows the file only without them.
void Store::requireReserve()
{
    const qint64 missing = m_shared.reserve ? m_shared.reserve->fill() : 0;
    if (missing > 0 && numberOf(sql::COUNT_FREE_PAGES) * numberOf(sql::PAGE_SIZE) < missing)
        throw SQLite::Exception("the remaining space is reserved for removals", SQLITE_FULL);
}

void Store::takeRoom(qint64 pages)
{
    sqlite3_int64 size = pages * numberOf(sql::PAGE_SIZE);
    const int result = sqlite3_file_control(m_database.getHandle(), "main", SQLITE_FCNTL_SIZE_HINT, &size);
    if (result != SQLITE_OK && result != SQLITE_NOTFOUND) // a database in memory ignores the hint
        throw SQLite::Exception("the database file cannot grow", SQLITE_FULL);
}

qint64 Store::numberOf(const char *pragma)
{
    const auto row = m_statements.take(pragma);
    return row->executeStep() ? qint64{row->getColumn(0).getInt64()} : 0;
}

void Store::useWriterCache()
{
    m_database.exec(sql::WRITER_CACHE);
}

// --------------------------------------------------------------------------------------------------------- places

void Store::insert(Place &place, std::optional<uid_t> guest)
{
    resetForeignIds(place, Place());
    giveIds(place, true);
    put(place, sql::INSERT_PLACE, guest);
}

void Store::keep(const Place &place, std::optional<uid_t> guest)
{
    put(place, sql::INSERT_PLACE, guest);
}

void Store::update(Place &place, const Place &before)
{
    resetForeignIds(place, before);
    giveIds(place, false);
    deleteEntries(place.id(), &before);
    put(place, sql::UPDATE_PLACE);
}

bool Store::remove(qint64 id)
{
    deleteEntries(id, readablePlace(id).get());
    return execute(sql::DELETE_PLACE, id) > 0;
}

Store::Ids Store::takeIds(int places, int locations, int records)
{
    const auto row = m_statements.take(sql::TAKE_IDS);
    bindEach(*row, places, locations, records);
    row->executeStep();
    return {row->getColumn(0).getInt64(), row->getColumn(1).getInt64(), row->getColumn(2).getInt64()};
}

/// Assigns a new id to a new place, and to each part without an id.
void Store::giveIds(Place &place, bool isNew)
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const int locations = countWithoutId(data.m_locations);
    const int records = countWithoutId(data.m_auxiliaryData);
    const Ids last = takeIds(isNew ? 1 : 0, locations, records);
    if (isNew)
        data.setId(last.place);
    qint64 next = last.location - locations;
    for (Location &location : data.m_locations) {
        if (location.id() == NO_ID)
            LocationPrivate::privateFromPublic(&location)->setId(++next);
    }
    next = last.auxiliary - records;
    for (AuxiliaryData &record : data.m_auxiliaryData) {
        if (record.id() == NO_ID)
            AuxiliaryDataPrivate::fromPublic(record)->setId(++next);
    }
}

void Store::put(const Place &place, const char *sql, std::optional<uid_t> guest)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const IndexEntries entries = IndexEntries::of(data);
    const std::vector<qint64> numbers = addFacets(entries);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        listFacet(entries.facets[i].kind, numbers[i], data);
    putRow(data, entries.isRoom, FacetNumbers::pack(numbers), sql);
    putKeys(place.id(), entries, numbers);
    for (const IndexEntries::Origin &origin : entries.origins)
        execute(sql::INSERT_ORIGIN, origin.externalId, origin.type, origin.provider, place.id());
    const std::string fullRecord = fullRecordOf(place);
    const std::string header = headerOf(place);
    putRecords(place.id(), fullRecord, header);
    if (guest)
        execute(sql::INSERT_GUEST, place.id(), qint64{*guest});
    execute(sql::SET_GUEST_BYTES, place.id(), sizeOf(entries, fullRecord, header));
}

void Store::listFacet(FacetKind kind, qint64 number, const PlacePrivate &place)
{
    if (isListed(kind))
        execute(sql::INSERT_PLACE_OF_FACET, number, place.usageCount(), static_cast<qint64>(place.lastUsedTime()),
                place.id());
}

std::vector<qint64> Store::addFacets(const IndexEntries &entries)
{
    std::vector<qint64> numbers;
    for (const Facet &facet : entries.facets)
        numbers.push_back(m_facets.add(facet));
    return numbers;
}

void Store::putKeys(qint64 id, const IndexEntries &entries, const std::vector<qint64> &numbers)
{
    QHash<QString, qint64> propertyKeys;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (entries.facets[i].kind == FacetKind::PropertyKey)
            propertyKeys.insert(entries.facets[i].text, numbers[i]);
    }
    for (const IndexEntries::Property &property : entries.properties)
        execute(sql::INSERT_PROPERTY, propertyKeys.value(property.key), property.value, id);
    execute(sql::INSERT_TEXT, id, entries.textKey);
    m_shared.words.add(utf8Words(entries.textKey));
}

void Store::putRow(const PlacePrivate &place, bool isRoom, const std::string &facets, const char *sql)
{
    const Coordinates position = place.primaryCoordinates();
    const bool isSomewhere = position.isValid();
    const auto row = m_statements.take(sql);
    bindEach(*row, indexKey(place.name()), sortKey(place.name()), int{place.hasTag(Tags::Favorite)},
             int{place.hasAuxiliaryData(AuxiliaryData::TypeContact)}, int{isRoom},
             static_cast<int>(place.securityPerimeter()), place.persistenceMask(), place.usageCount(),
             static_cast<qint64>(place.lastUsedTime()), static_cast<qint64>(place.createdTime()),
             static_cast<qint64>(place.updatedTime()),
             isSomewhere ? std::optional<double>(position.latitude()) : std::nullopt,
             isSomewhere ? std::optional<double>(position.longitude()) : std::nullopt);
    bindBlob(*row, 14, facets);
    row->bind(15, static_cast<int64_t>(place.id()));
    row->exec();
}

void Store::putRecords(qint64 id, const std::string &fullRecord, const std::string &header)
{
    const auto row = m_statements.take(sql::PUT_RECORDS);
    row->bind(1, static_cast<int64_t>(id));
    bindBlob(*row, 2, m_records->pack(fullRecord));
    bindBlob(*row, 3, m_records->pack(header));
    row->exec();
}

void Store::deleteEntries(qint64 id, const Place *place)
{
    if (place) {
        const IndexEntries entries = IndexEntries::of(*PlacePrivate::privateFromPublic(place));
        for (const IndexEntries::Property &property : entries.properties)
            execute(sql::DELETE_PROPERTY, property.key, property.value, id);
        execute(sql::DELETE_TEXT, id, entries.textKey);
        for (const IndexEntries::Origin &origin : entries.origins)
            execute(sql::DELETE_ORIGIN, origin.externalId, origin.type, origin.provider, id);
    } else {
        // The words of its texts stay in the text index; finds join that index with the rows.
        execute(sql::DELETE_PROPERTIES_OF_PLACE, id);
        execute(sql::DELETE_ORIGINS_OF_PLACE, id);
    }
    deleteFacets(id);
}

void Store::deleteFacets(qint64 id)
{
    const auto statement = m_statements.take(sql::SELECT_ROW);
    bindEach(*statement, id);
    if (!statement->executeStep())
        return;
    const StoredRow row(*this, *statement);
    for (const qint64 number : FacetNumbers::unpack(row.facets())) {
        execute(sql::DELETE_PLACE_OF_FACET, number, row.usageCount(), row.lastUsedTime(), id);
        m_facets.release(number);
    }
}

std::vector<qint64> Store::recentBucket()
{
    std::vector<qint64> ids;
    const auto bucket = m_statements.take(sql::SELECT_RECENT_BUCKET);
    while (bucket->executeStep())
        ids.push_back(bucket->getColumn(0).getInt64());
    return ids;
}

void Store::takeFromRecentBucket(qint64 id)
{
    const std::unique_ptr<Place> before = readablePlace(id);
    const std::unique_ptr<Place> recent = before ? place(id) : nullptr;
    if (!recent)
        return;
    PlacePrivate &data = *PlacePrivate::privateFromPublic(recent.get());
    data.setPersistenceMask(data.persistenceMask() & ~PlacePrivate::InRecentBucket);
    if (data.persistenceMask() == 0)
        remove(id);
    else
        update(*recent, *before);
}

bool Store::Standing::isOpen() const
{
    return (persistenceMask & PlacePrivate::ExplicitlySaved) != 0 && !isPrivate;
}

bool Store::isGuest(qint64 id)
{
    const auto row = m_statements.take(sql::SELECT_GUEST);
    bindEach(*row, id);
    return row->executeStep();
}

bool Store::hasGuests()
{
    return m_statements.take(sql::SELECT_ANY_GUEST)->executeStep();
}

Store::Shares Store::sharesOf(uid_t user)
{
    const auto row = m_statements.take(sql::SELECT_SHARES);
    bindEach(*row, qint64{user});
    row->executeStep();
    const auto number = [&row](int column) { return qint64{row->getColumn(column).getInt64()}; };
    return {{number(0), number(1)}, {number(2), number(3)}};
}

std::optional<Store::Standing> Store::standingOf(qint64 id)
{
    const auto row = m_statements.take(sql::SELECT_STANDING);
    row->bind(1, static_cast<int64_t>(id));
    if (!row->executeStep())
        return std::nullopt;
    return readStanding(*row);
}

std::optional<Store::StoredPlace> Store::storedPlace(qint64 id)
{
    const auto row = m_statements.take(sql::SELECT_STANDING_AND_RECORD);
    row->bind(1, static_cast<int64_t>(id));
    if (!row->executeStep())
        return std::nullopt;
    return StoredPlace{readStanding(*row), unpack(row->getColumn(4))};
}

std::string Store::unpack(const SQLite::Column &column)
{
    const auto size = static_cast<std::size_t>(column.getBytes());
    return m_records->unpack(column.getBlob(), size);
}

std::string Store::storedRecord(qint64 id, bool headerOnly)
{
    const auto row = m_statements.take(headerOnly ? sql::SELECT_HEADER : sql::SELECT_FULL_RECORD);
    row->bind(1, static_cast<int64_t>(id));
    return row->executeStep() ? unpack(row->getColumn(0)) : std::string();
}

std::unique_ptr<Place> Store::place(qint64 id)
{
    const std::string record = storedRecord(id, false);
    return record.empty() ? nullptr : decodePlace(record);
}

std::unique_ptr<Place> Store::readablePlace(qint64 id)
{
    const std::string record = readableRecord(id, false);
    try {
        return record.empty() ? nullptr : decodePlace(record);
    } catch (const UnreadablePlace &error) {
        skipUnreadable(id, error);
        return nullptr;
    }
}

std::string Store::readableRecord(qint64 id, bool headerOnly)
{
    try {
        return storedRecord(id, headerOnly);
    } catch (const SQLite::Exception &error) {
        skipUnreadable(id, error);
        return {};
    }
}

void Store::skipUnreadable(qint64 id, const SQLite::Exception &error)
{
    const bool isDamagedPage = m_shared.damage && m_shared.damage->note(error);
    if (!isDamagedPage && !dynamic_cast<const UnreadablePlace *>(&error))
        throw;
    logError("place %lld is left out: %s; remove it, or restore a backup", static_cast<long long>(id), error.what());
}

std::string Store::textKey(qint64 id)
{
    const std::unique_ptr<Place> place = readablePlace(id);
    return place ? utf8(textKeyOf(*PlacePrivate::privateFromPublic(place.get()))) : std::string();
}

const CorrectionSource &Store::vocabulary()
{
    m_shared.words.load([this] { return storedWords(); });
    return m_shared.words;
}

void Store::rereadVocabulary()
{
    std::optional<SharedVocabulary::Replacement> replacement;
    std::unique_ptr<SQLite::Transaction> reading;
    {
        const std::lock_guard<std::timed_mutex> lock(m_shared.writeLock);
        replacement.emplace(m_shared.words);
        reading = snapshot();
        m_database.execAndGet(sql::COUNT_TABLES);
    }
    replacement->finish(storedWords());
}

std::vector<std::string> Store::storedWords()
{
    std::vector<std::string> words;
    const auto row = m_statements.take(sql::SELECT_WORDS);
    while (row->executeStep())
        words.push_back(row->getColumn(0).getString());
    return words;
}

qint64 Store::placeCount(int persistenceBits)
{
    qint64 count = 0;
    const QStringList masks = m_facets.texts(FacetKind::Persistence);
    for (const QString &mask : masks) {
        if ((mask.toInt() & persistenceBits) != 0)
            count += m_facets.count(FacetKind::Persistence, utf8(mask));
    }
    return count;
}

std::unique_ptr<SQLite::Transaction> Store::snapshot()
{
    return std::make_unique<SQLite::Transaction>(m_database);
}

// ---------------------------------------------------------------------------------------------------------- terms

void Store::rememberTerm(const QString &term)
{
    if (term.isEmpty())
        return;
    execute(sql::REMEMBER_TERM, term, searchKey(term));
    execute(sql::DELETE_OLD_TERMS, limits::SEARCH_TERMS);
}

QStringList Store::recentTerms(const QString &prefix)
{
    QStringList terms;
    const TextTest starts(SearchOperator::StartsWith, searchKey(prefix));
    const auto row = m_statements.take(sql::SELECT_TERMS);
    while (row->executeStep()) {
        if (starts(row->getColumn(1).getString()))
            terms.append(QString::fromStdString(row->getColumn(0).getString()));
    }
    return terms;
}

// -------------------------------------------------------------------------------------------------------- origins

qint64 Store::storedIdOf(const Place &candidate, bool isOpen)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&candidate);
    if (data.auxiliaryData().isEmpty() || data.hasTag(QLatin1String(InternalTags::Suggestion)))
        return NO_ID;
    const AuxiliaryData &record = data.auxiliaryData().first();
    if (record.externalId().isEmpty())
        return NO_ID;
    const auto row = m_statements.take(sql::SELECT_BY_SOURCE);
    bindEach(*row, record.externalId(), record.type(), keyOf(record.provider()), int{isOpen});
    return row->executeStep() ? row->getColumn(0).getInt64() : NO_ID;
}

std::optional<QHash<QString, qint64>> Store::storedOrigins(const QString &type, qint64 most, bool isOpen)
{
    QHash<QString, qint64> places;
    const qint64 count = m_facets.count(FacetKind::Type, utf8(type));
    if (count > most)
        return {};
    if (count == 0)
        return places;
    const auto row = m_statements.take(sql::SELECT_ORIGINS);
    bindEach(*row, type, int{isOpen});
    const auto text = [&row](int column) { return QString::fromStdString(row->getColumn(column).getString()); };
    // The oldest of several places with the same record comes last and wins.
    while (row->executeStep())
        places.insert(originKey(type, text(0), text(1)), row->getColumn(2).getInt64());
    return places;
}

qint64 Store::idOf(const QString &externalId, const QString &type, bool isOpen)
{
    const auto row = m_statements.take(sql::SELECT_BY_EXTERNAL_ID);
    bindEach(*row, externalId, type, int{isOpen});
    return row->executeStep() ? row->getColumn(0).getInt64() : NO_ID;
}

} // namespace placesd
