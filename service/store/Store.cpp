// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Store.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "find/FindSql.h"
#include "Limits.h"
#include "Log.h"
#include "model/InternalTags.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "store/Records.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"
#include "store/TextKeys.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <sqlite3.h>
#include <SQLiteCpp/Backup.h>
#include <stdexcept>

namespace placesd
{

using namespace vela::platform::places;

namespace
{

constexpr int SCHEMA_VERSION = 2;
/// Id of what is not stored yet.
constexpr qint64 NO_ID = -1;
/// Ids from here on are those of candidates: behind every stored place.
constexpr qint64 FIRST_CANDIDATE = qint64{1} << 62;
/// Statements kept prepared; more than the store has of its own, so that a few finds keep theirs too.
constexpr std::size_t KEPT_STATEMENTS = 64;
/// Virtual machine steps between two looks at the clock.
constexpr int STEPS_PER_CHECK = 10000;
/// Longest wait for a writer in another process.
constexpr int BUSY_TIMEOUT_MS = 5000;

int versionOf(SQLite::Database &database)
{
    return database.execAndGet("PRAGMA user_version").getInt();
}

/// Brings the tables of a database from one version to another.
void makeTables(SQLite::Database &database, int from, int to)
{
    constexpr const char *STEPS[SCHEMA_VERSION] = {sql::SCHEMA_1, sql::SCHEMA_2};
    for (int version = from; version < to; ++version)
        database.exec(STEPS[version]);
}

/// How the tables, indexes and triggers of a database were made.
std::vector<std::string> tablesOf(SQLite::Database &database)
{
    std::vector<std::string> tables;
    SQLite::Statement row(database, sql::SELECT_TABLES);
    while (row.executeStep())
        tables.push_back(row.getColumn(0).getString());
    return tables;
}

/// Name and URL of a provider, which identify it.
QString keyOf(const Provider &provider)
{
    return provider.isValid() ? provider.name() + QLatin1Char(' ') + provider.url().toString() : QString();
}

/// What a candidate is known by when it is found twice; empty when nothing tells.
QString sourceOf(const Place &place)
{
    const auto &records = PlacePrivate::privateFromPublic(&place)->auxiliaryData();
    if (records.isEmpty() || records.first().externalId().isEmpty())
        return {};
    const AuxiliaryData &record = records.first();
    return QStringList{record.type(), keyOf(record.provider()), record.externalId()}.join(QLatin1Char('\n'));
}

/// NULL for what has no id, which then gets the next one that never was in use.
void bindId(SQLite::Statement &statement, int index, qint64 id)
{
    if (id == NO_ID)
        statement.bind(index);
    else
        statement.bind(index, static_cast<int64_t>(id));
}

} // namespace

Store::Store(const std::string &path, std::timed_mutex &writeLock)
    : m_database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX, BUSY_TIMEOUT_MS)
    , m_writeLock(writeLock)
{
    m_database.exec(sql::CONNECTION_SETTINGS);
    m_database.exec(sql::CANDIDATES);
    registerFunctions(m_database);
    sqlite3_progress_handler(m_database.getHandle(), STEPS_PER_CHECK, interruptLate, this);
    const std::lock_guard<std::timed_mutex> lock(m_writeLock);
    migrate();
}

Store::~Store() = default;

void Store::startRequest(Deadline deadline)
{
    m_deadline = deadline;
}

int Store::interruptLate(void *store)
{
    return hasPassed(static_cast<Store *>(store)->m_deadline);
}

void Store::migrate()
{
    if (versionOf(m_database) == SCHEMA_VERSION)
        return;
    // Another process may be about it as well: what has to be done is known only when nobody else can write.
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    const int version = versionOf(m_database);
    if (version > SCHEMA_VERSION)
        throw SQLite::Exception("the database was made by a newer placesd", SQLITE_CANTOPEN);
    makeTables(m_database, version, SCHEMA_VERSION);
    if (version > 0 && version < SCHEMA_VERSION)
        writeAllAnew();
    transaction.commit();
}

/// Makes all that places are found by anew, by the rules of this version. A place that cannot be read stays as it is.
void Store::writeAllAnew()
{
    std::vector<qint64> ids;
    SQLite::Statement &all = statement(sql::SELECT_IDS);
    while (all.executeStep())
        ids.push_back(all.getColumn(0).getInt64());
    all.reset();
    for (const qint64 id : ids) {
        if (const std::unique_ptr<Place> whole = readablePlace(id))
            update(*whole, *whole);
    }
}

std::unique_ptr<Place> Store::readablePlace(qint64 id)
{
    try {
        return place(id);
    } catch (const SQLite::Exception &error) {
        logError("place %lld: %s", static_cast<long long>(id), error.what());
        return nullptr;
    }
}

void Store::requirePlaces(SQLite::Database &database)
{
    const int version = versionOf(database);
    if (version < 1 || version > SCHEMA_VERSION)
        throw std::runtime_error("another program made it, or a newer placesd");
    SQLite::Database model(":memory:", SQLite::OPEN_READWRITE);
    makeTables(model, 0, version);
    if (tablesOf(database) != tablesOf(model))
        throw std::runtime_error("it is no database of places");
}

void Store::requireSoundness()
{
    const auto require = [](bool sound) {
        if (!sound)
            throw std::runtime_error("it is damaged");
    };
    require(m_database.execAndGet("PRAGMA integrity_check(1)").getString() == "ok");
    require(m_database.execAndGet("SELECT rtreecheck('position')").getString() == "ok");
    m_database.exec(sql::CHECK_NAME_INDEX);
    SQLite::Statement &row = statement(sql::SELECT_RECORDS);
    const Finish finish{row};
    while (row.executeStep()) {
        const std::unique_ptr<Place> place = decodePlace(blobOf(row.getColumn(1)));
        const std::unique_ptr<PlaceHeader> header = decodeHeader(blobOf(row.getColumn(2)));
        require(place->id() == row.getColumn(0).getInt64() && header->id() == place->id());
    }
}

void Store::keepIdsOf(Store &other)
{
    write([&] {
        SQLite::Statement &highest = other.statement(sql::SELECT_HIGHEST_IDS);
        const Finish finish{highest};
        while (highest.executeStep()) {
            for (const char *sql : {sql::INSERT_HIGHEST_ID, sql::RAISE_HIGHEST_ID}) {
                SQLite::Statement &row = statement(sql);
                row.bind(1, highest.getColumn(0).getString());
                row.bind(2, highest.getColumn(1).getInt64());
                row.exec();
            }
        }
        return true;
    });
}

void Store::copyOver(Store &other)
{
    SQLite::Backup backup(other.m_database, m_database);
    const int result = backup.executeStep(-1);
    if (result != SQLITE_DONE)
        throw SQLite::Exception("the database is locked", result);
}

SQLite::Statement &Store::statement(const std::string &sql)
{
    const auto found = m_statements.find(sql);
    if (found != m_statements.end()) {
        found->second->tryReset();
        return *found->second;
    }
    if (m_statements.size() >= KEPT_STATEMENTS)
        m_statements.clear();
    return *m_statements.emplace(sql, std::make_unique<SQLite::Statement>(m_database, sql)).first->second;
}

bool Store::write(const std::function<bool()> &work)
{
    const std::unique_lock<std::timed_mutex> lock(m_writeLock, m_deadline);
    if (!lock)
        throw SQLite::Exception("other writers took too long", SQLITE_BUSY);
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    if (!work())
        return false;
    transaction.commit();
    return true;
}

void Store::bindPlace(SQLite::Statement &statement, const Place &place)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const Coordinates position = data.primaryCoordinates();
    statement.bind(1, utf8(data.name()));
    statement.bind(2, utf8(searchKey(data.name())));
    statement.bind(3, utf8(sortKey(data.name())));
    statement.bind(4, utf8(data.owner()));
    statement.bind(5, static_cast<int>(data.securityPerimeter()));
    statement.bind(6, data.persistenceMask());
    statement.bind(7, data.usageCount());
    statement.bind(8, static_cast<int64_t>(data.lastUsedTime()));
    statement.bind(9, static_cast<int64_t>(data.createdTime()));
    statement.bind(10, static_cast<int64_t>(data.updatedTime()));
    if (position.isValid()) {
        statement.bind(11, position.latitude());
        statement.bind(12, position.longitude());
    } else {
        statement.bind(11);
        statement.bind(12);
    }
}

void Store::insert(Place &place)
{
    forgetForeignIds(place, Place());
    SQLite::Statement &row = statement(sql::INSERT_PLACE);
    bindPlace(row, place);
    row.exec();
    PlacePrivate::privateFromPublic(&place)->setId(m_database.getLastInsertRowid());
    writeParts(place);
    writeRecords(place);
}

void Store::update(Place &place, const Place &before)
{
    forgetForeignIds(place, before);
    SQLite::Statement &row = statement(sql::UPDATE_PLACE);
    bindPlace(row, place);
    row.bind(13, static_cast<int64_t>(place.id()));
    row.exec();
    for (const char *sql : {sql::DELETE_LOCATIONS, sql::DELETE_TAGS, sql::DELETE_AUXILIARY}) {
        SQLite::Statement &parts = statement(sql);
        parts.bind(1, static_cast<int64_t>(place.id()));
        parts.exec();
    }
    writeParts(place);
    writeRecords(place);
}

/// Parts keep an id that they have had in the stored place, once each; every other one is to get a new id.
void Store::forgetForeignIds(Place &place, const Place &before)
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

/// Writes what a place is found by besides its own row, and gives an id to each part that has none.
void Store::writeParts(Place &place)
{
    const auto id = static_cast<int64_t>(place.id());
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    for (Location &location : data.m_locations) {
        SQLite::Statement &row = statement(sql::INSERT_LOCATION);
        bindId(row, 1, location.id());
        row.bind(2, id);
        row.exec();
        LocationPrivate::privateFromPublic(&location)->setId(m_database.getLastInsertRowid());
    }
    for (const QString &text : data.tags()) {
        SQLite::Statement &tag = statement(sql::INSERT_TAG);
        tag.bind(1, utf8(text));
        tag.bind(2, id);
        tag.exec();
    }
    for (AuxiliaryData &record : data.m_auxiliaryData)
        writeAuxiliary(record, id);
}

void Store::writeAuxiliary(AuxiliaryData &record, int64_t place)
{
    SQLite::Statement &row = statement(sql::INSERT_AUXILIARY);
    bindId(row, 1, record.id());
    row.bind(2, place);
    row.bind(3, utf8(record.type()));
    row.bind(4, utf8(record.externalId()));
    row.bind(5, utf8(keyOf(record.provider())));
    row.exec();
    const auto id = static_cast<int64_t>(m_database.getLastInsertRowid());
    AuxiliaryDataPrivate::fromPublic(record)->setId(id);
    const QMap<QString, QString> properties = record.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        SQLite::Statement &entry = statement(sql::INSERT_PROPERTY);
        entry.bind(1, id);
        entry.bind(2, place);
        entry.bind(3, utf8(searchKey(property.key())));
        entry.bind(4, utf8(searchKey(property.value())));
        entry.exec();
    }
}

void Store::writeRecords(const Place &place)
{
    SQLite::Statement &row = statement(sql::UPDATE_RECORDS);
    bindBlob(row, 1, fullRecordOf(place));
    bindBlob(row, 2, headerOf(place));
    row.bind(3, static_cast<int64_t>(place.id()));
    row.exec();
}

bool Store::remove(qint64 id)
{
    SQLite::Statement &row = statement(sql::DELETE_PLACE);
    row.bind(1, static_cast<int64_t>(id));
    return row.exec() > 0;
}

void Store::clearRecentBucket()
{
    std::vector<qint64> ids;
    SQLite::Statement &bucket = statement(sql::SELECT_RECENT_BUCKET);
    while (bucket.executeStep())
        ids.push_back(bucket.getColumn(0).getInt64());
    bucket.reset();
    for (const qint64 id : ids) {
        const std::unique_ptr<Place> before = readablePlace(id);
        const std::unique_ptr<Place> recent = before ? place(id) : nullptr;
        if (!recent)
            continue;
        PlacePrivate &data = *PlacePrivate::privateFromPublic(recent.get());
        data.setPersistenceMask(data.persistenceMask() & ~PlacePrivate::InRecentBucket);
        if (data.persistenceMask() == 0)
            remove(id);
        else
            update(*recent, *before);
    }
}

std::optional<Store::Standing> Store::standingOf(qint64 id)
{
    SQLite::Statement &row = statement(sql::SELECT_STANDING);
    const Finish finish{row};
    row.bind(1, static_cast<int64_t>(id));
    if (!row.executeStep())
        return std::nullopt;
    return Standing{static_cast<vela::system::SecurityPerimeter::Type>(row.getColumn(0).getInt()),
                    row.getColumn(1).getInt()};
}

std::string Store::storedRecord(qint64 id, bool headerOnly)
{
    SQLite::Statement &row = statement(headerOnly ? sql::SELECT_HEADER : sql::SELECT_FULL_RECORD);
    const Finish finish{row};
    row.bind(1, static_cast<int64_t>(id));
    return row.executeStep() ? blobOf(row.getColumn(0)) : std::string();
}

std::unique_ptr<Place> Store::place(qint64 id)
{
    const std::string record = storedRecord(id, false);
    return record.empty() ? nullptr : decodePlace(record);
}

QStringList Store::tags()
{
    QStringList tags;
    SQLite::Statement &row = statement(sql::SELECT_TAGS);
    const Finish finish{row};
    while (row.executeStep())
        tags.append(QString::fromStdString(row.getColumn(0).getString()));
    return tags;
}

void Store::rememberTerm(const QString &term)
{
    if (term.isEmpty())
        return;
    SQLite::Statement &remember = statement(sql::REMEMBER_TERM);
    remember.bind(1, utf8(term));
    remember.exec();
    SQLite::Statement &forget = statement(sql::FORGET_OLD_TERMS);
    forget.bind(1, limits::SEARCH_TERMS);
    forget.exec();
}

QStringList Store::recentTerms(const QString &prefix)
{
    QStringList terms;
    const QString start = searchKey(prefix);
    SQLite::Statement &row = statement(sql::SELECT_TERMS);
    const Finish finish{row};
    while (row.executeStep()) {
        const QString term = QString::fromStdString(row.getColumn(0).getString());
        if (searchKey(term).startsWith(start))
            terms.append(term);
    }
    return terms;
}

// ---------------------------------------------------------------------------------------------------------- finds

SQLite::Statement &Store::bindPage(const FindSql &find, int count, int offset)
{
    SQLite::Statement &row = statement(find.selectPage());
    int next = bindAll(row, find.bindings(), 1);
    next = bindAll(row, find.sortBindings(), next);
    row.bind(next, count);
    row.bind(next + 1, offset);
    return row;
}

std::vector<std::string> Store::find(const FindSql &find, int count, int offset)
{
    std::vector<std::string> records;
    SQLite::Statement &row = bindPage(find, count, offset);
    const Finish finish{row};
    while (row.executeStep())
        records.push_back(blobOf(row.getColumn(0)));
    return records;
}

int Store::count(const FindSql &find)
{
    SQLite::Statement &row = statement(find.selectCount());
    const Finish finish{row};
    bindAll(row, find.bindings(), 1);
    row.executeStep();
    return row.getColumn(0).getInt();
}

std::vector<std::string> Store::find(const FindSql &find, const std::vector<Candidate> &candidates, bool headerOnly,
                                     int count, int offset)
{
    // One state of the database from the look-up of the candidates to the last record.
    SQLite::Transaction snapshot(m_database);
    stage(candidates, find.needsParts());
    std::vector<qint64> ids;
    {
        SQLite::Statement &row = bindPage(find, count, offset);
        const Finish finish{row};
        while (row.executeStep())
            ids.push_back(row.getColumn(0).getInt64());
    }
    std::vector<std::string> records;
    records.reserve(ids.size());
    for (const qint64 id : ids)
        records.push_back(id < FIRST_CANDIDATE ? storedRecord(id, headerOnly) : candidateRecord(id, headerOnly));
    return records;
}

int Store::count(const FindSql &find, const std::vector<Candidate> &candidates)
{
    SQLite::Transaction snapshot(m_database);
    stage(candidates, find.needsParts());
    return count(find);
}

std::string Store::candidateRecord(qint64 id, bool headerOnly) const
{
    const Place &place = *m_staged[static_cast<std::size_t>(id - FIRST_CANDIDATE)];
    return headerOnly ? headerOf(place) : fullRecordOf(place);
}

void Store::stage(const std::vector<Candidate> &candidates, bool withParts)
{
    m_database.exec(sql::FORGET_CANDIDATES);
    m_staged.clear();
    QHash<QString, qint64> known;
    for (const Candidate &candidate : candidates) {
        const Place &place = *candidate.place;
        const QString source = sourceOf(place);
        qint64 id = storedIdOf(place);
        if (id == NO_ID)
            id = known.value(source, NO_ID);
        if (id == NO_ID)
            id = stageNew(candidate.place, withParts);
        if (!source.isEmpty())
            known.insert(source, id);
        SQLite::Statement &found = statement(sql::INSERT_FOUND);
        found.bind(1, candidate.source);
        found.bind(2, static_cast<int64_t>(id));
        found.exec();
    }
}

qint64 Store::stageNew(const FoundPlace &candidate, bool withParts)
{
    const Place &place = *candidate;
    const Coordinates position = place.primaryCoordinates();
    const auto id = FIRST_CANDIDATE + static_cast<qint64>(m_staged.size());
    SQLite::Statement &row = statement(sql::INSERT_CANDIDATE);
    row.clearBindings();
    bindAll(row,
            {id, searchKey(place.name()), sortKey(place.name()),
             PlacePrivate::privateFromPublic(&place)->hasAuxiliaryData(AuxiliaryData::TypeContact)},
            1);
    if (position.isValid())
        bindAll(row, {position.latitude(), position.longitude()}, 5);
    row.exec();
    m_staged.push_back(candidate);
    if (withParts)
        stageParts(place, id);
    return id;
}

void Store::stageParts(const Place &place, qint64 id)
{
    const auto insert = [this](const char *sql, const std::vector<QVariant> &values) {
        SQLite::Statement &row = statement(sql);
        bindAll(row, values, 1);
        row.exec();
    };
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    for (const QString &tag : data.tags())
        insert(sql::INSERT_CANDIDATE_TAG, {tag, id});
    for (const AuxiliaryData &record : data.auxiliaryData()) {
        insert(sql::INSERT_CANDIDATE_AUXILIARY, {record.type(), id});
        const QMap<QString, QString> properties = record.properties();
        for (auto property = properties.begin(); property != properties.end(); ++property)
            insert(sql::INSERT_CANDIDATE_PROPERTY, {searchKey(property.key()), searchKey(property.value()), id});
    }
}

qint64 Store::storedIdOf(const Place &candidate)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&candidate);
    if (data.auxiliaryData().isEmpty() || data.hasTag(QLatin1String(InternalTags::Suggestion)))
        return NO_ID;
    const AuxiliaryData &record = data.auxiliaryData().first();
    SQLite::Statement &row = statement(sql::SELECT_BY_SOURCE);
    const Finish finish{row};
    bindAll(row, {record.externalId(), record.type(), keyOf(record.provider())}, 1);
    return row.executeStep() ? row.getColumn(0).getInt64() : NO_ID;
}

qint64 Store::idOf(const QString &externalId, const QString &type)
{
    SQLite::Statement &row = statement(sql::SELECT_BY_EXTERNAL_ID);
    const Finish finish{row};
    bindAll(row, {externalId, type}, 1);
    return row.executeStep() ? row.getColumn(0).getInt64() : NO_ID;
}

} // namespace placesd
