// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Store.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "FindSql.h"
#include "Limits.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "places/PlaceHeader.h"
#include "places/Utilities.h"
#include "protocol/PlacesAPIDecoder.h"
#include "protocol/PlacesAPIEncoder.h"
#include "Sql.h"
#include "TextKeys.h"

#include <QtCore/QSet>

#include <cmath>
#include <sqlite3.h>
#include <SQLiteCpp/Backup.h>
#include <stdexcept>

namespace placesd
{

using orix_places_protocol::PlacesAPIDecoder;
using orix_places_protocol::PlacesAPIEncoder;
using namespace vela::platform::places;

namespace
{

constexpr int SCHEMA_VERSION = 1;
/// Id of what is not stored yet.
constexpr qint64 NO_ID = -1;
/// Statements kept prepared; more than the store has of its own, so that a few finds keep theirs too.
constexpr std::size_t KEPT_STATEMENTS = 64;
/// Virtual machine steps between two looks at the clock.
constexpr int STEPS_PER_CHECK = 10000;
/// Longest wait for a writer in another process.
constexpr int BUSY_TIMEOUT_MS = 5000;

std::string utf8(const QString &text)
{
    return text.toStdString();
}

QString textOf(sqlite3_value *value)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(value)), sqlite3_value_bytes(value));
}

void containsWordsFunction(sqlite3_context *context, int, sqlite3_value **arguments)
{
    sqlite3_result_int(context, containsWords(textOf(arguments[0]), textOf(arguments[1])));
}

/// Metres between two points; NULL where one of them is not known.
void distanceFunction(sqlite3_context *context, int count, sqlite3_value **arguments)
{
    for (int i = 0; i < count; ++i) {
        if (sqlite3_value_type(arguments[i]) == SQLITE_NULL)
            return sqlite3_result_null(context);
    }
    const Coordinates a(sqlite3_value_double(arguments[0]), sqlite3_value_double(arguments[1]));
    const Coordinates b(sqlite3_value_double(arguments[2]), sqlite3_value_double(arguments[3]));
    sqlite3_result_double(context, Utilities::calculateDistanceInMeter(a, b));
}

std::string messageOf(const PlacesAPIEncoder &encoder)
{
    char *data = nullptr;
    int length = 0;
    encoder.getData(data, length);
    return std::string(data, static_cast<std::size_t>(length));
}

std::string blobOf(const SQLite::Column &column)
{
    const auto size = static_cast<std::size_t>(column.getBytes());
    return size == 0 ? std::string() : std::string(static_cast<const char *>(column.getBlob()), size);
}

std::unique_ptr<Place> decodePlace(const std::string &record)
{
    PlacesAPIDecoder decoder(record.data(), static_cast<unsigned int>(record.size()));
    Place *decoded = nullptr;
    if (!decoder.serviceDecodePlace(decoded))
        throw SQLite::Exception("a stored place cannot be read", SQLITE_CORRUPT);
    return std::unique_ptr<Place>(decoded);
}

std::unique_ptr<PlaceHeader> decodeHeader(const std::string &record)
{
    PlacesAPIDecoder decoder(record.data(), static_cast<unsigned int>(record.size()));
    PlaceHeader *decoded = nullptr;
    if (!decoder.decodePlaceHeader(decoded))
        throw SQLite::Exception("a stored header cannot be read", SQLITE_CORRUPT);
    return std::unique_ptr<PlaceHeader>(decoded);
}

int versionOf(SQLite::Database &database)
{
    return database.execAndGet("PRAGMA user_version").getInt();
}

/// Brings the tables of a database from one version to another.
void makeTables(SQLite::Database &database, int from, int to)
{
    constexpr const char *STEPS[SCHEMA_VERSION] = {sql::SCHEMA_1};
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

void bindValue(SQLite::Statement &statement, int index, const QVariant &value)
{
    if (value.type() == QVariant::String)
        statement.bind(index, utf8(value.toString()));
    else if (value.type() == QVariant::Double)
        statement.bind(index, value.toDouble());
    else
        statement.bind(index, static_cast<int64_t>(value.toLongLong()));
}

/// NULL for what has no id, which then gets the next one that never was in use.
void bindId(SQLite::Statement &statement, int index, qint64 id)
{
    if (id == NO_ID)
        statement.bind(index);
    else
        statement.bind(index, static_cast<int64_t>(id));
}

int bindAll(SQLite::Statement &statement, const std::vector<QVariant> &values, int from)
{
    for (const QVariant &value : values)
        bindValue(statement, from++, value);
    return from;
}

} // namespace

/// Resets a statement at the end of a scope, so that it holds no lock.
struct Store::Finish
{
    SQLite::Statement &statement;
    ~Finish() { statement.tryReset(); }
};

Store::Store(const std::string &path, std::mutex &writeLock)
    : m_database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX, BUSY_TIMEOUT_MS)
    , m_writeLock(writeLock)
{
    m_database.exec(sql::CONNECTION_SETTINGS);
    registerFunctions();
    const std::lock_guard<std::mutex> lock(m_writeLock);
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

void Store::registerFunctions()
{
    constexpr int FLAGS = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    sqlite3 *handle = m_database.getHandle();
    sqlite3_create_function(handle, "contains_words", 2, FLAGS, nullptr, containsWordsFunction, nullptr, nullptr);
    sqlite3_create_function(handle, "distance", 4, FLAGS, nullptr, distanceFunction, nullptr, nullptr);
    sqlite3_progress_handler(handle, STEPS_PER_CHECK, interruptLate, this);
}

void Store::migrate()
{
    const int version = versionOf(m_database);
    if (version > SCHEMA_VERSION)
        throw SQLite::Exception("the database was made by a newer placesd", SQLITE_CANTOPEN);
    if (version == SCHEMA_VERSION)
        return;
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    makeTables(m_database, version, SCHEMA_VERSION);
    transaction.commit();
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
    const std::lock_guard<std::mutex> lock(m_writeLock);
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
    PlacesAPIEncoder full;
    PlacesAPIEncoder header;
    full.encodePlace(place);
    header.encodePlaceHeader(place);
    const std::string fullRecord = messageOf(full);
    const std::string headerRecord = messageOf(header);
    SQLite::Statement &row = statement(sql::UPDATE_RECORDS);
    row.bind(1, fullRecord.data(), static_cast<int>(fullRecord.size()));
    row.bind(2, headerRecord.data(), static_cast<int>(headerRecord.size()));
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
        const std::unique_ptr<Place> before = place(id);
        const std::unique_ptr<Place> recent = place(id);
        PlacePrivate &data = *PlacePrivate::privateFromPublic(recent.get());
        data.setPersistenceMask(data.persistenceMask() & ~PlacePrivate::InRecentBucket);
        if (data.persistenceMask() == 0)
            remove(id);
        else
            update(*recent, *before);
    }
}

std::string Store::fullRecord(qint64 id)
{
    SQLite::Statement &row = statement(sql::SELECT_FULL_RECORD);
    const Finish finish{row};
    row.bind(1, static_cast<int64_t>(id));
    return row.executeStep() ? blobOf(row.getColumn(0)) : std::string();
}

std::unique_ptr<Place> Store::place(qint64 id)
{
    const std::string record = fullRecord(id);
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

bool Store::find(const Query &query, bool external, Page &page)
{
    const FindSql find(query, external);
    if (!find.isUnderstood())
        return false;
    SQLite::Statement &row = statement(find.selectPage());
    const Finish finish{row};
    int next = bindAll(row, find.bindings(), 1);
    next = bindAll(row, find.sortBindings(), next);
    row.bind(next, static_cast<int64_t>(query.count) + 1);
    row.bind(next + 1, query.offset);
    while (!page.hasMore && row.executeStep()) {
        if (page.records.size() == static_cast<std::size_t>(query.count))
            page.hasMore = true;
        else
            page.records.push_back(blobOf(row.getColumn(0)));
    }
    return true;
}

bool Store::count(const Query &query, bool external, int &count)
{
    const FindSql find(query, external);
    if (!find.isUnderstood())
        return false;
    SQLite::Statement &row = statement(find.selectCount());
    const Finish finish{row};
    bindAll(row, find.bindings(), 1);
    row.executeStep();
    count = row.getColumn(0).getInt();
    return true;
}

} // namespace placesd
