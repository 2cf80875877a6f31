// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"
#include "store/PlaceRow.h"

#include <QtCore/QHash>

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace placesd
{

class Store;

/// A find's view of a place that is not stored. It has no uses and no times.
class CandidateRow : public PlaceRow
{
public:
    CandidateRow(FoundPlace place, qint64 id);

    [[nodiscard]] const FoundPlace &place() const { return m_place; }

    [[nodiscard]] qint64 id() const override { return m_id; }
    [[nodiscard]] bool isStored() const override { return false; }
    [[nodiscard]] std::string_view nameKey() const override;
    [[nodiscard]] std::string_view sortKey() const override;
    [[nodiscard]] vela::system::SecurityPerimeter::Type perimeter() const override { return {}; }
    [[nodiscard]] int persistenceMask() const override { return 0; }
    [[nodiscard]] qint64 usageCount() const override { return 0; }
    [[nodiscard]] qint64 lastUsedTime() const override { return 0; }
    [[nodiscard]] qint64 creationTime() const override { return 0; }
    [[nodiscard]] qint64 updateTime() const override { return 0; }
    [[nodiscard]] vela::platform::places::Coordinates position() const override;
    [[nodiscard]] bool passes(const FacetTest &test) const override;
    [[nodiscard]] bool passes(const PropertyTest &test) const override;
    [[nodiscard]] bool passes(const TermTest &test) const override;

private:
    const FoundPlace m_place;
    const qint64 m_id;
    // Computed on first use.
    mutable std::optional<std::string> m_nameKey;
    mutable std::optional<std::string> m_sortKey;
    mutable std::optional<std::string> m_textKey;
};

/// Places from sources other than the store, by leaf of the rule. A candidate that is already stored is replaced by the
/// stored place; all others get temporary ids above those of stored places, valid during the find.
class Candidates
{
public:
    /// @param external true for the open channel: stored places that it may not see do not count as stored.
    explicit Candidates(Store &store, bool external = false)
        : m_store(store)
        , m_external(external)
    {}

    /// Adds the places of a source for a leaf.
    void add(int source, const std::vector<FoundPlace> &places);
    [[nodiscard]] const std::deque<CandidateRow> &rows() const { return m_rows; }
    /// The candidate with an id; null for the id of a stored place.
    [[nodiscard]] const CandidateRow *row(qint64 id) const;

    [[nodiscard]] bool wasFound(qint64 id) const;
    [[nodiscard]] bool wasFoundBy(int source, qint64 id) const;
    /// The stored places that were found by a leaf, or by any leaf, without duplicates.
    [[nodiscard]] std::vector<qint64> storedIds(int source) const;

private:
    /// The id of the stored place equal to a candidate; -1 for none.
    qint64 storedIdOf(const FoundPlace &place, const QString &key, std::size_t expected);
    void add(int source, const FoundPlace &place, std::size_t expected);

    Store &m_store;
    const bool m_external;
    std::deque<CandidateRow> m_rows;
    QHash<QString, qint64> m_known; ///< Ids by key of a source.
    /// Stored places by type and key, for types with few places.
    std::map<QString, std::optional<QHash<QString, qint64>>> m_stored;
    std::map<int, std::unordered_set<qint64>> m_found;
};

} // namespace placesd
