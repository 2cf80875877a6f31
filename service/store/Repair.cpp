// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Repair.h"

#include "model/PlacePrivate.h"
#include "places/AuxiliaryData.h"
#include "places/Location.h"
#include "store/Check.h"
#include "store/DatabaseFile.h"
#include "store/FileCopy.h"
#include "store/PrivateFolder.h"
#include "store/Records.h"
#include "store/Store.h"
#include "store/UnreadablePlace.h"
#include "text/TextKeys.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <stdexcept>

namespace placesd
{

using vela::platform::places::PlacePrivate;
using Type = PageScan::Type;
namespace fs = std::filesystem;

namespace
{

constexpr PageScan::Number SCHEMA_ROOT = 1;
/// Stored ids are below this.
constexpr qint64 ID_END = qint64{1} << 60;
/// Gap between the highest known id and new ids when the last ids are lost; very likely more than the number of removed
/// places.
constexpr qint64 ID_GAP = 1'000'000;
/// Tables that are read.
constexpr const char *TABLES[] = {"place",       "record",          "dictionary",  "last_id",
                                  "search_term", "sqlite_sequence", "guest_share", "guest"};

bool isId(qint64 id)
{
    return id > 0 && id < ID_END;
}

template <typename Parts>
qint64 highestOf(const Parts &parts)
{
    qint64 highest = 0;
    for (const auto &part : parts)
        highest = isId(part.id()) ? std::max(highest, part.id()) : highest;
    return highest;
}

} // namespace

Repair::Report Repair::run(const std::string &from, const std::string &to)
{
    if (!fs::is_regular_file(from))
        throw std::runtime_error(from + ": there is no such file");
    if (fs::exists(fs::symlink_status(to)))
        throw std::runtime_error(to + " exists");
    const std::string file = fs::canonical(from);
    if (isInUse(file))
        throw std::runtime_error(from + " is in use; stop the service first");
    DatabasePages pages(file);
    const PrivateFolder folder(to);
    Report report;
    {
        StoreShared unshared;
        Store store(folder.filePath(), unshared);
        Repair repair(pages, store);
        if (!store.write([&repair] { return repair.copy(); }))
            throw std::runtime_error(from + ": nothing in it can be read");
        report = repair.m_report;
    }
    if (fs::exists(folder.filePath() + "-wal"))
        throw std::runtime_error(to + ": there is no room for it");
    moveIntoPlace(folder.filePath(), to);
    return report;
}

Repair::Repair(DatabasePages &pages, Store &store)
    : m_scan(pages)
    , m_store(store)
{}

bool Repair::copy()
{
    readSchema();
    readLastIds();
    readDictionaries();
    readGuests();
    copyPlaces();
    copyTerms();
    const qint64 gap = m_lastIds.empty() ? ID_GAP : 0;
    m_store.raiseLastIds(m_highest[0] + gap, m_highest[1] + gap, m_highest[2] + gap);
    return !m_roots.empty() || m_report.places + m_report.terms > 0;
}

PageScan::Number Repair::rootOf(const char *table) const
{
    const auto root = m_roots.find(table);
    return root != m_roots.end() ? root->second : 0;
}

void Repair::readSchema()
{
    m_hasWholeSchema = m_scan.read(SCHEMA_ROOT, [this](const Row &row) {
        const auto &values = row.values;
        if (values.size() != 5 || values[0].type != Type::Text || values[1].type != Type::Text
            || values[3].type != Type::Integer)
            return false;
        const bool isTable = values[0].bytes == "table" && values[4].type == Type::Text
                             && std::count(std::begin(TABLES), std::end(TABLES), values[1].bytes) > 0;
        if (isTable && values[3].number > 0 && values[3].number <= UINT32_MAX)
            m_roots.emplace(values[1].bytes, static_cast<PageScan::Number>(values[3].number));
        return true;
    });
}

/// Versions 1 and 2 use SQLite's sequence table.
void Repair::readLastIds()
{
    std::unordered_set<PageScan::Number> seen;
    m_scan.walk(
        rootOf("last_id"),
        [this](const Row &row) {
            const bool isRow = row.has({Type::Integer, Type::Integer, Type::Integer});
            for (const auto &value : row.values)
                m_lastIds.push_back(value.number);
            return isRow;
        },
        seen);
    std::map<std::string, qint64> sequence;
    m_scan.walk(
        rootOf("sqlite_sequence"),
        [&sequence](const Row &row) {
            const bool isRow = row.has({Type::Text, Type::Integer});
            if (isRow)
                sequence[row.values[0].bytes] = row.values[1].number;
            return isRow;
        },
        seen);
    if (sequence.count("place") > 0)
        m_lastIds = {sequence["place"], sequence["location"], sequence["auxiliary"]};
    const bool isSound =
        m_lastIds.size() == m_highest.size()
        && std::all_of(m_lastIds.begin(), m_lastIds.end(), [](qint64 id) { return id == 0 || isId(id); });
    if (isSound)
        m_highest = m_lastIds;
    else
        m_lastIds.clear();
}

/// Also tries the default dictionary when none is found or the found one is damaged.
void Repair::readDictionaries()
{
    m_scan.read(rootOf("dictionary"), [this](const Row &row) {
        if (!row.has({Type::Blob}) || row.values[0].type != Type::Blob)
            return false;
        try {
            m_packers.push_back(std::make_unique<RecordCompressor>(row.values[0].bytes));
            return true;
        } catch (const std::bad_alloc &) { // invalid
            return false;
        }
    });
    m_packers.push_back(std::make_unique<RecordCompressor>(RecordCompressor::makeDictionary()));
}

/// Rows of the shares look like those of guests, so they are distinguished by their pages.
void Repair::readGuests()
{
    const auto take = [this](const Row &row) {
        const bool isRow = row.has({Type::Null, Type::Integer, Type::Integer});
        if (isRow)
            m_guests.emplace(row.id, static_cast<uid_t>(row.values[1].number));
        return isRow;
    };
    std::unordered_set<PageScan::Number> seen;
    const bool isShareKnown = m_scan.walk(
        rootOf("guest_share"), [](const Row &) { return true; }, seen);
    const bool isWhole = m_scan.walk(rootOf("guest"), take, seen);
    if (isWhole || (m_hasWholeSchema && rootOf("guest") == 0))
        return;
    if (isShareKnown)
        m_scan.visitRest(take, seen);
    m_report.losses.emplace_back("some users who added places by the open channel cannot be read: these places belong "
                                 "to the owner now");
}

void Repair::copyPlaces()
{
    // Versions 1 and 2 store places and records in one table.
    const bool isOld = m_hasWholeSchema && rootOf("record") == 0;
    const bool hasAllRecords =
        m_scan.read(rootOf(isOld ? "place" : "record"), [this](const Row &row) { return takeRecord(row); });
    m_report.places = m_kept.size();
    reportLost(hasAllRecords);
    for (const qint64 id : m_unreadable)
        lose(id, {});
    for (const qint64 id : m_partial) {
        const std::unique_ptr<Place> place = m_store.place(id);
        m_report.losses.push_back(nameOfPlace(id, place ? utf8(place->name()) : std::string())
                                  + ": only its header could be read");
    }
}

/// In every version the last two columns are the records.
bool Repair::takeRecord(const Row &row)
{
    const std::size_t count = row.values.size();
    if (count < 3 || row.values[0].type != Type::Null)
        return false;
    const auto isRecord = [](const PageScan::Value &value) {
        return value.type == Type::Blob || value.type == Type::Lost;
    };
    if (!isRecord(row.values[count - 2]) || !isRecord(row.values[count - 1]))
        return false;
    const Decoded decoded = decode(row);
    if (decoded.place && isId(row.id))
        keep(row.id, decoded, row.isInTree);
    else if (row.isInTree)
        m_unreadable.insert(row.id);
    return true;
}

Repair::Decoded Repair::decode(const Row &row)
{
    const std::size_t count = row.values.size();
    if (std::unique_ptr<Place> place = decode(row.id, row.values[count - 2].bytes, false))
        return {std::move(place), true};
    return {decode(row.id, row.values[count - 1].bytes, true), false};
}

/// A record is valid when it contains the id of its row.
std::unique_ptr<Repair::Place> Repair::decode(qint64 id, const std::string &stored, bool isHeader)
{
    const auto attempt = [&](RecordCompressor *packer) -> std::unique_ptr<Place> {
        try {
            const std::string record = packer ? packer->unpack(stored.data(), stored.size()) : stored;
            std::unique_ptr<Place> place = isHeader ? placeOfHeader(record) : decodePlace(record);
            return place->id() == id ? std::move(place) : nullptr;
        } catch (const UnreadablePlace &) {
            return nullptr;
        }
    };
    for (const auto &packer : m_packers) {
        if (std::unique_ptr<Place> place = attempt(packer.get()))
            return place;
    }
    return attempt(nullptr);
}

void Repair::keep(qint64 id, const Decoded &decoded, bool isInTree)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(decoded.place.get());
    const Rank rank(isInTree, decoded.isWhole, data.updatedTime(), data.lastUsedTime(), data.usageCount());
    if (const auto known = m_kept.find(id); known != m_kept.end()) {
        if (known->second >= rank)
            return;
        m_store.remove(id);
    }
    m_kept[id] = rank;
    if (decoded.isWhole)
        m_partial.erase(id);
    else
        m_partial.insert(id);
    const auto guest = m_guests.find(id);
    m_store.keep(*decoded.place, guest != m_guests.end() ? std::optional(guest->second) : std::nullopt);
    m_highest = {std::max(m_highest[0], id), std::max(m_highest[1], highestOf(data.locations())),
                 std::max(m_highest[2], highestOf(data.auxiliaryData()))};
}

void Repair::reportLost(bool hasAllRecords)
{
    const auto take = [this](const Row &row) {
        constexpr std::size_t COLUMNS = 15;
        const auto &values = row.values;
        if (values.size() != COLUMNS || values[0].type != Type::Null || values[1].type != Type::Text
            || values[2].type != Type::Text)
            return false;
        lose(row.id, values[1].bytes);
        return true;
    };
    std::unordered_set<PageScan::Number> seen;
    const bool hasAllPlaces = m_scan.walk(rootOf("place"), take, seen);
    if (hasAllRecords || hasAllPlaces)
        return;
    m_scan.visitRest(take, seen);
    m_report.losses.emplace_back("pages of the tables of places cannot be read: unknown places may be "
                                 "lost, too");
}

void Repair::lose(qint64 id, const std::string &name)
{
    if (m_kept.count(id) > 0 || !m_lost.insert(id).second)
        return;
    const bool isThere = m_unreadable.count(id) > 0;
    m_report.losses.push_back(nameOfPlace(id, name)
                              + (isThere ? ": its record cannot be read" : ": its record is lost"));
    m_highest[0] = isId(id) ? std::max(m_highest[0], id) : m_highest[0];
    ++m_report.lostPlaces;
}

/// Versions 1 and 2 have no key column.
void Repair::copyTerms()
{
    std::map<qint64, QString> terms; // in the order of use
    const bool isWhole = m_scan.read(rootOf("search_term"), [&terms](const Row &row) {
        const bool hasKey = row.has({Type::Text, Type::Text, Type::Integer});
        if (!hasKey && !(row.isInTree && row.has({Type::Text, Type::Integer})))
            return false;
        const QString term = QString::fromStdString(row.values[0].bytes);
        // Other tables have such rows, too.
        if (row.isInTree || utf8(searchKey(term)) == row.values[1].bytes)
            terms[row.values.back().number] = term;
        return true;
    });
    for (const auto &[used, term] : terms)
        m_store.rememberTerm(term);
    m_report.terms = terms.size();
    if (!isWhole)
        m_report.losses.emplace_back("the table of search terms cannot be read as a whole");
}

} // namespace placesd
