// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Place.h"
#include "store/PageScan.h"
#include "store/RecordCompressor.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

namespace placesd
{

class Store;

/// Copies what can be read of a damaged database of any version into a new one. Places come from their records alone:
/// all that they are found by is made anew. Belongs to one thread.
class Repair
{
public:
    /// What came of it.
    struct Report
    {
        std::size_t places = 0;
        std::size_t terms = 0;
        std::size_t lostPlaces = 0; ///< That are known to have been there.
        /// A line for each thing that was lost, in whole or in part; none when nothing was. They name places, so they
        /// are for the operator's terminal and not for the log.
        std::vector<std::string> losses;
    };

    /// Throws std::runtime_error when nothing can be read, `to` exists, or `from` is in use; nothing is written then.
    /// @param from is not changed. @param to gets mode 0600.
    static Report run(const std::string &from, const std::string &to);

private:
    using Place = vela::platform::places::Place;
    using Row = PageScan::Row;
    /// What decides between several versions of a place: that of the tree, else a whole one, else the newest.
    using Rank = std::tuple<bool, bool, quint64, quint64, int>;
    struct Decoded
    {
        std::unique_ptr<Place> place;
        bool isWhole = false; ///< And not only what its header says.
    };

    Repair(DatabasePages &pages, Store &store);
    /// False when there is nothing.
    bool copy();
    void readSchema();
    void readLastIds();
    void readDictionaries();
    void readGuests();
    void copyPlaces();
    void copyTerms();
    bool takeRecord(const Row &row);
    void keep(qint64 id, const Decoded &decoded, bool isInTree);
    Decoded decode(const Row &row);
    std::unique_ptr<Place> decode(qint64 id, const std::string &stored, bool isHeader);
    /// Reports the places that the table of places has and the records do not.
    void reportLost(bool hasAllRecords);
    /// Reports a place as lost, unless it was kept.
    void lose(qint64 id, const std::string &name);
    /// Where a table begins; 0 when that is not known.
    [[nodiscard]] PageScan::Number rootOf(const char *table) const;

    PageScan m_scan;
    Store &m_store;
    Report m_report;
    std::map<std::string, PageScan::Number> m_roots;
    bool m_hasWholeSchema = false;
    std::vector<qint64> m_lastIds; ///< Of places, locations and auxiliary records; empty when they cannot be read.
    std::vector<std::unique_ptr<RecordCompressor>> m_packers; ///< Those that records may be packed by.
    std::unordered_map<qint64, uid_t> m_guests;               ///< By place.
    std::unordered_map<qint64, Rank> m_kept;                  ///< By place.
    std::set<qint64> m_partial;                               ///< Of which only the header was read.
    std::set<qint64> m_unreadable;                            ///< Whose record is there and cannot be read.
    std::set<qint64> m_lost;
    std::vector<qint64> m_highest = {0, 0, 0}; ///< Ids that are in use, as m_lastIds.
};

} // namespace placesd
