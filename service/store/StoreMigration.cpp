// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Part of Store: creates, migrates, checks and replaces the tables.

#include "store/Store.h"

#include "Log.h"
#include "model/PlacePrivate.h"
#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "store/FileCopy.h"
#include "store/IndexEntries.h"
#include "store/OldSchemas.h"
#include "store/PrivateFolder.h"
#include "store/Records.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"
#include "store/StoredRow.h"
#include "text/TextKeys.h"

#include <sqlite3.h>
#include <SQLiteCpp/Backup.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <malloc.h>

namespace placesd
{

using vela::platform::places::Place;
using vela::platform::places::PlacePrivate;

namespace
{

constexpr int SCHEMA_VERSION = 5;

int versionOf(SQLite::Database &database)
{
    return database.execAndGet("PRAGMA user_version").getInt();
}

/// The SQL of all tables, indexes and triggers of a database.
std::vector<std::string> tablesOf(SQLite::Database &database)
{
    std::vector<std::string> tables;
    SQLite::Statement row(database, sql::SELECT_TABLES);
    while (row.executeStep())
        tables.push_back(row.getColumn(0).getString());
    return tables;
}

/// Creates the tables of a version.
void makeTablesOf(int version, SQLite::Database &database)
{
    if (version >= 3)
        database.exec(sql::TABLES);
    if (version >= 4)
        database.exec(sql::TEXT_TABLES);
    if (version >= 5)
        database.exec(sql::GUEST_TABLES);
    if (version <= 2)
        database.exec(old_schemas::VERSION_1);
    if (version == 2)
        database.exec(old_schemas::VERSION_2);
}

bool isHeader(const std::string &record)
{
    try {
        decodeHeader(record);
        return true;
    } catch (const SQLite::Exception &) {
        return false;
    }
}

/// Statements that return 1 for a problem, or fail.
constexpr struct
{
    const char *sql;
    const char *problem;
} CHECKS[] = {
    {sql::IS_POSITION_WRONG, "positions and their index do not match"},
    {sql::IS_RECORD_MISSING, "places and records do not match"},
    {sql::IS_FACET_WRONG, "counts of tags, owners or types are wrong"},
    {sql::IS_ID_WRONG, "ids and the last ones given do not match"},
    {sql::IS_GUEST_WRONG, "places of the open channel and their counts do not match"},
    {sql::IS_DICTIONARY_WRONG, "there is not one dictionary of the records"},
    {sql::IS_LAST_ID_WRONG, "there is not one row of last ids"},
};
/// Statements that fail for a damaged word index.
constexpr struct
{
    const char *sql;
    const char *problem;
} INDEX_CHECKS[] = {{sql::CHECK_NAME_INDEX, "the index of names does not match the places"},
                    {sql::CHECK_TEXT_INDEX, "the index of texts is damaged"}};

/// Reports a problem unless `isSound` returns true. Rethrows errors that are not about the content.
void checkOne(const ReportProblem &report, const char *problem, const std::function<bool()> &isSound, qint64 place = 0)
{
    bool found = true;
    try {
        found = !isSound();
    } catch (const SQLite::Exception &error) {
        if (error.getErrorCode() != SQLITE_CORRUPT)
            throw;
    }
    if (found)
        report(problem, place);
}

} // namespace

void Store::migrate()
{
    const int found = versionOf(m_database);
    if (found == SCHEMA_VERSION && hasCurrentKeys())
        return;
    if (m_shared.keepsOldVersion && found > 0 && found < SCHEMA_VERSION)
        keepOldVersion(found);
    {
        // Another process may migrate as well, so decide under the write lock.
        SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
        const int version = versionOf(m_database);
        if (version > SCHEMA_VERSION)
            throw SQLite::Exception("it was made by a newer placesd than this one", SQLITE_CANTOPEN);
        if (version == 0)
            makeTables();
        else if (version < 3)
            moveFromOldVersion();
        else
            remakeKeys(version);
        requireUndamaged();
        takeRoom(numberOf(sql::COUNT_PAGES));
        transaction.commit();
    }
    if (found == 1 || found == 2)
        m_database.tryExec("VACUUM"); // Frees the space of the old tables, if possible.
    // The large cache of the migration is no longer needed.
    m_database.exec(sql::CONNECTION_SETTINGS);
    sqlite3_db_release_memory(m_database.getHandle());
    ::malloc_trim(0);
}

/// The migration is one transaction that changes nothing on failure, so it runs even without space for the copy.
void Store::keepOldVersion(int version)
{
    const std::string database = m_database.getFilename();
    const std::string copy = database + ".version-" + std::to_string(version);
    try {
        const PrivateFolder folder(copy);
        writeSnapshot(database, folder.filePath(), m_deadline);
        moveIntoPlace(folder.filePath(), copy);
        logInfo("%s has version %d and is migrated; %s is a copy of the old version", database.c_str(), version,
                copy.c_str());
    } catch (const std::exception &error) {
        logError("%s has version %d and is migrated; no copy of the old version can be kept as %s: %s",
                 database.c_str(), version, copy.c_str(), error.what());
    }
}

void Store::makeTables()
{
    makeTablesOf(SCHEMA_VERSION, m_database);
    const auto row = m_statements.take(sql::INSERT_DICTIONARY);
    bindBlob(*row, 1, RecordCompressor::makeDictionary());
    row->exec();
    keepKeyRules();
}

bool Store::hasCurrentKeys()
{
    const auto row = m_statements.take(sql::SELECT_KEY_RULES);
    return row->executeStep() && row->getColumn(0).getString() == keyVersion();
}

void Store::keepKeyRules()
{
    execute(sql::DELETE_KEY_RULES);
    execute(sql::INSERT_KEY_RULES, QString::fromStdString(keyVersion()));
}

/// Version 3 has no keys of all texts, and version 4 does not mark private places; keys of version 5 may have other
/// rules or other Unicode data. All keys are rebuilt from the records.
void Store::remakeKeys(int version)
{
    if (version == SCHEMA_VERSION && hasCurrentKeys())
        return;
    if (version < 4)
        m_database.exec(sql::TEXT_TABLES);
    if (version < 5)
        m_database.exec(sql::GUEST_TABLES);
    logInfo("the keys of all places are rebuilt, which takes minutes in a large database");
    openRecords();
    m_database.exec(sql::LARGE_CACHE);
    execute(sql::DELETE_PROPERTIES);
    execute(sql::DELETE_TEXTS);
    std::vector<qint64> ids;
    {
        const auto row = m_statements.take(sql::SELECT_PLACE_IDS);
        while (row->executeStep())
            ids.push_back(row->getColumn(0).getInt64());
    }
    for (const qint64 id : ids) {
        if (const std::unique_ptr<Place> place = readablePlace(id))
            remakeKeysOf(*place);
    }
    QStringList terms = recentTerms(QString());
    while (!terms.isEmpty())
        rememberTerm(terms.takeLast());
    keepKeyRules();
}

/// All facets except property keys stay unchanged, with the lists of their places. An older version does not have all
/// of them.
void Store::remakeKeysOf(const Place &place)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const IndexEntries entries = IndexEntries::of(data);
    std::vector<qint64> before;
    {
        const auto statement = m_statements.take(sql::SELECT_ROW);
        bindEach(*statement, place.id());
        statement->executeStep();
        before = FacetNumbers::unpack(StoredRow(*this, *statement).facets());
    }
    const std::vector<qint64> numbers = addFacets(entries);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (std::find(before.begin(), before.end(), numbers[i]) == before.end())
            listFacet(entries.facets[i].kind, numbers[i], data);
    }
    for (const qint64 number : before)
        m_facets.release(number);
    putRow(data, entries.isRoom, FacetNumbers::pack(numbers), sql::UPDATE_PLACE);
    putKeys(place.id(), entries, numbers);
}

/// Versions 1 and 2 store the same records; all other tables are rebuilt from them.
void Store::moveFromOldVersion()
{
    std::vector<qint64> highest;
    for (const char *table : {"place", "location", "auxiliary"}) {
        SQLite::Statement row(m_database, old_schemas::SELECT_HIGHEST_ID);
        row.bind(1, table);
        row.executeStep();
        highest.push_back(row.getColumn(0).getInt64());
    }
    m_database.exec(old_schemas::DROP_REBUILT);
    makeTables();
    openRecords();
    raiseLastIds(highest[0], highest[1], highest[2]);
    moveOldPlaces();
    SQLite::Statement term(m_database, old_schemas::SELECT_TERMS);
    while (term.executeStep())
        rememberTerm(QString::fromStdString(term.getColumn(0).getString()));
    term.reset();
    m_database.exec(old_schemas::DROP_OLD);
}

void Store::moveOldPlaces()
{
    SQLite::Statement old(m_database, old_schemas::SELECT_PLACES);
    while (old.executeStep()) {
        std::unique_ptr<Place> place;
        try {
            place = decodePlace(blobOf(old.getColumn(1)));
        } catch (const SQLite::Exception &) {
            keepUnreadable(old);
            continue;
        }
        put(*place, sql::INSERT_PLACE);
    }
}

/// An unreadable place keeps its record and its row, and can be removed. Its tags and auxiliary records are lost: they
/// are in the record only.
void Store::keepUnreadable(SQLite::Statement &old)
{
    const auto id = static_cast<qint64>(old.getColumn(0).getInt64());
    const std::vector<qint64> numbers = {
        m_facets.add({FacetKind::Owner, QString::fromStdString(old.getColumn(5).getString())}),
        m_facets.add({FacetKind::Persistence, QString::number(old.getColumn(7).getInt())})};
    execute(sql::INSERT_PLACE_OF_FACET, numbers[0], qint64{old.getColumn(8).getInt64()},
            qint64{old.getColumn(9).getInt64()}, id);
    const auto row = m_statements.take(sql::INSERT_PLACE);
    const auto copy = [&](int index, int column) {
        const SQLite::Column value = old.getColumn(column);
        if (value.isNull())
            row->bind(index);
        else if (value.isFloat())
            row->bind(index, value.getDouble());
        else if (value.isText())
            row->bind(index, value.getString());
        else
            row->bind(index, value.getInt64());
    };
    copy(1, 3);
    copy(2, 4);
    for (const int flag : {3, 4, 5})
        row->bind(flag, 0);
    for (int column = 6; column < 14; ++column)
        copy(column, column);
    bindBlob(*row, 14, FacetNumbers::pack(numbers));
    row->bind(15, static_cast<int64_t>(id));
    row->exec();
    // Without compression it cannot be decompressed, so it never gets into a reply.
    const std::string header = blobOf(old.getColumn(2));
    const auto records = m_statements.take(sql::PUT_RECORDS);
    records->bind(1, static_cast<int64_t>(id));
    bindBlob(*records, 2, blobOf(old.getColumn(1)));
    bindBlob(*records, 3, isHeader(header) ? m_records->pack(header) : header);
    records->exec();
}

void Store::requirePlaces(SQLite::Database &database)
{
    const int version = versionOf(database);
    if (version < 1)
        throw std::runtime_error("it is the SQLite file of another program");
    if (version > SCHEMA_VERSION) {
        throw std::runtime_error("it is of version " + std::to_string(version) + ", and this placesd reads 1 to "
                                 + std::to_string(SCHEMA_VERSION) + ": a newer placesd made it, or another program");
    }
    SQLite::Database model(":memory:", SQLite::OPEN_READWRITE);
    makeTablesOf(version, model);
    if (tablesOf(database) != tablesOf(model))
        throw std::runtime_error(
            "it does not have the tables of a database of places: another program made or changed it");
}

void Store::checkPages(const ReportProblem &report)
{
    checkPagesOf(m_database, report);
}

void Store::check(const ReportProblem &report)
{
    for (const auto &[sql, problem] : CHECKS)
        checkOne(report, problem, [&, sql = sql] { return m_database.execAndGet(sql).getInt() == 0; });
    for (const auto &[sql, problem] : INDEX_CHECKS)
        checkOne(report, problem, [&, sql = sql] { return m_database.exec(sql), true; });
    checkRecords(report);
}

void Store::checkRecords(const ReportProblem &report)
{
    std::vector<qint64> ids;
    checkOne(report, "not all places can be listed", [&] {
        const auto row = m_statements.take(sql::SELECT_PLACE_IDS);
        while (row->executeStep())
            ids.push_back(row->getColumn(0).getInt64());
        return true;
    });
    for (const qint64 id : ids) {
        const auto isSound = [&] {
            const auto row = m_statements.take(sql::SELECT_BOTH_RECORDS);
            bindEach(*row, id);
            return !row->executeStep()
                   || (decodePlace(unpack(row->getColumn(0)))->id() == id
                       && decodeHeader(unpack(row->getColumn(1)))->id() == id);
        };
        checkOne(report, "its record cannot be read", isSound, id);
    }
}

void Store::raiseLastIds(qint64 place, qint64 location, qint64 auxiliary)
{
    execute(sql::RAISE_LAST_IDS, place, location, auxiliary);
}

void Store::keepIdsOf(Store &other)
{
    write([&] {
        const auto row = other.m_statements.take(sql::SELECT_LAST_IDS);
        row->executeStep();
        raiseLastIds(row->getColumn(0).getInt64(), row->getColumn(1).getInt64(), row->getColumn(2).getInt64());
        return true;
    });
}

void Store::packLike(Store &other)
{
    const std::string wanted = other.dictionary();
    if (wanted == dictionary())
        return;
    write([&] {
        RecordCompressor packer(wanted);
        std::vector<qint64> ids;
        {
            const auto row = m_statements.take(sql::SELECT_RECORDS);
            while (row->executeStep())
                ids.push_back(row->getColumn(0).getInt64());
        }
        for (const qint64 id : ids) {
            const auto row = m_statements.take(sql::UPDATE_RECORDS);
            row->bind(1, static_cast<int64_t>(id));
            bindBlob(*row, 2, packer.pack(storedRecord(id, false)));
            bindBlob(*row, 3, packer.pack(storedRecord(id, true)));
            row->exec();
        }
        execute(sql::DELETE_DICTIONARY);
        const auto put = m_statements.take(sql::INSERT_DICTIONARY);
        bindBlob(*put, 1, wanted);
        put->exec();
        return true;
    });
    openRecords();
}

void Store::copyOver(Store &other)
{
    other.takeRoom(numberOf(sql::COUNT_PAGES));
    SQLite::Backup backup(other.m_database, m_database);
    const int result = backup.executeStep(-1);
    if (result != SQLITE_DONE)
        throw SQLite::Exception("the database is locked", result);
}

} // namespace placesd
