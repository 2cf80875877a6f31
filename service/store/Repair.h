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

/// Copies the readable part of a damaged database of any version to a new one. Places are read from their records only;
/// all search data is rebuilt. Not thread-safe.
class Repair
{
public:
    /// Result of a repair.
    struct Report
    {
        std::size_t places = 0;
        std::size_t terms = 0;
        std::size_t lostPlaces = 0; ///< Places that are known to be lost.
        /// One line per loss, complete or partial; empty when nothing is lost. They contain names of places, so print
        /// them to the operator's terminal, not to the log.
        std::vector<std::string> losses;
    };

    /// Throws std::runtime_error when nothing can be read, `to` exists, or `from` is in use; writes nothing then.
    /// @param from is not changed. @param to gets mode 0600.
    static Report run(const std::string &from, const std::string &to);

private:
    using Place = vela::platform::places::Place;
    using Row = PageScan::Row;
    /// Rank of a version of a place: found in the tree, then complete, then newest.
    using Rank = std::tuple<bool, bool, quint64, quint64, int>;
    struct Decoded
    {
        std::unique_ptr<Place> place;
        bool isWhole = false; ///< Complete, not from the header only.
    };

    Repair(DatabasePages &pages, Store &store);
    /// False when there are no places.
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
    /// Reports places that have a row in the table of places but no record.
    void reportLost(bool hasAllRecords);
    /// Reports a place as lost, unless it is kept.
    void lose(qint64 id, const std::string &name);
    /// Root page of a table; 0 when it is unknown.
    [[nodiscard]] PageScan::Number rootOf(const char *table) const;

    PageScan m_scan;
    Store &m_store;
    Report m_report;
    std::map<std::string, PageScan::Number> m_roots;
    bool m_hasWholeSchema = false;
    std::vector<qint64> m_lastIds; ///< Last ids of places, locations and auxiliary records; empty when they cannot be
                                   ///< read.
    std::vector<std::unique_ptr<RecordCompressor>> m_packers; ///< Compressors for all possible dictionaries.
    std::unordered_map<qint64, uid_t> m_guests;               ///< By place.
    std::unordered_map<qint64, Rank> m_kept;                  ///< By place.
    std::set<qint64> m_partial;                               ///< Places read from their header only.
    std::set<qint64> m_unreadable;                            ///< Places with an unreadable record.
    std::set<qint64> m_lost;
    std::vector<qint64> m_highest = {0, 0, 0}; ///< Highest ids in use, in the order of m_lastIds.
};

} // namespace placesd
