// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Check.h"

#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "store/DamageReport.h"
#include "store/DatabaseFile.h"
#include "store/FileCopy.h"
#include "store/PrivateFolder.h"
#include "store/Records.h"
#include "store/Sql.h"
#include "store/Store.h"

#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>

#include <sqlite3.h>

namespace placesd
{

namespace fs = std::filesystem;

namespace
{

/// Copies a database and its write-ahead log, if any, byte by byte.
void copyFiles(const std::string &from, const std::string &to)
{
    for (const char *end : {"", "-wal"}) {
        if (const std::string file = from + end; *end == '\0' || fs::exists(file))
            fs::copy_file(file, to + end);
    }
}

/// The rows of a statement up to an error. The first line of a check can be a line of stars.
std::vector<std::string> linesOf(SQLite::Statement &row)
{
    std::vector<std::string> lines;
    try {
        while (row.executeStep()) {
            std::istringstream text(row.getColumn(0).getString());
            for (std::string line; std::getline(text, line);) {
                if (!line.empty() && line.front() != '*')
                    lines.push_back(line);
            }
        }
    } catch (const SQLite::Exception &error) {
        if (!isDamage(error))
            throw;
        if (lines.empty())
            lines.emplace_back(error.what());
    }
    return lines;
}

/// The readable part of the name of a place.
std::string nameOf(Store &store, qint64 id)
{
    for (const bool headerOnly : {true, false}) {
        try {
            const std::string record = store.storedRecord(id, headerOnly);
            return utf8(headerOnly ? decodeHeader(record)->name() : decodePlace(record)->name());
        } catch (const SQLite::Exception &) {
            continue;
        }
    }
    try {
        const auto row = store.statements().take(sql::SELECT_NAME_KEY);
        bindEach(*row, id);
        return row->executeStep() ? row->getColumn(0).getString() : std::string();
    } catch (const SQLite::Exception &) {
        return {};
    }
}

/// Migrates the copy and checks its content.
void checkPlaces(const std::string &copy, std::vector<std::string> &problems)
{
    StoreShared unshared;
    Store store(copy, unshared);
    store.check([&](const std::string &problem, qint64 place) {
        problems.push_back(place > 0 ? nameOfPlace(place, nameOf(store, place)) + ": " + problem : problem);
    });
}

} // namespace

std::string nameOfPlace(qint64 id, const std::string &name)
{
    return "place " + std::to_string(id) + (name.empty() ? name : " (" + name + ")");
}

void checkPagesOf(SQLite::Database &database, const ReportProblem &report)
{
    SQLite::Statement all(database, sql::CHECK_PAGES);
    const std::vector<std::string> problems = linesOf(all);
    if (problems == std::vector<std::string>{"ok"})
        return;
    std::set<std::string> known;
    SQLite::Statement tables(database, sql::SELECT_TABLE_NAMES);
    SQLite::Statement pages(database, sql::CHECK_PAGES_OF_TABLE);
    for (const std::string &table : linesOf(tables)) {
        pages.tryReset(); // tryReset() repeats the previous error.
        pages.bind(1, table);
        for (const std::string &problem : linesOf(pages)) {
            if (problem == "ok")
                continue;
            report("table " + table + ": " + problem, 0);
            known.insert(problem);
        }
    }
    for (const std::string &problem : problems) {
        if (known.count(problem) == 0)
            report(problem, 0);
    }
}

std::vector<std::string> checkDatabase(const std::string &path)
{
    if (!fs::is_regular_file(path))
        throw std::runtime_error("there is no such file");
    const std::string file = fs::canonical(path);
    const PrivateFolder folder((fs::temp_directory_path() / "placesd-check").string());
    const std::string copy = folder.filePath();
    std::vector<std::string> problems;
    try {
        if (isInUse(file))
            writeSnapshot(file, copy, Deadline::max());
        else
            copyFiles(file, copy);
        {
            SQLite::Database database(copy, SQLite::OPEN_READWRITE);
            distrust(database);
            Store::requirePlaces(database);
            checkPagesOf(database, [&](const std::string &problem, qint64) { problems.push_back(problem); });
        }
        checkPlaces(copy, problems);
    } catch (const SQLite::Exception &error) {
        if (!isDamage(error) || error.getErrorCode() == SQLITE_NOTADB)
            throw;
        problems.emplace_back(error.what());
    }
    return problems;
}

} // namespace placesd
