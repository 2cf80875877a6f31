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

/// A place that is not stored, as a find looks at it. It was never used, nor stored.
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
    // Made when they are asked for.
    mutable std::optional<std::string> m_nameKey;
    mutable std::optional<std::string> m_sortKey;
    mutable std::optional<std::string> m_textKey;
};

/// What the sources gave for the leaves of a rule. A candidate that is stored is that stored place; any other gets an
/// id behind those of all stored places, for the length of the find.
class Candidates
{
public:
    /// @param external whether they are for the open channel: to it a stored place that it does not know is none.
    explicit Candidates(Store &store, bool external = false)
        : m_store(store)
        , m_external(external)
    {}

    /// Adds what a source gave for a leaf.
    void add(int source, const std::vector<FoundPlace> &places);
    [[nodiscard]] const std::deque<CandidateRow> &rows() const { return m_rows; }
    /// The candidate of an id; null for a stored place.
    [[nodiscard]] const CandidateRow *row(qint64 id) const;

    [[nodiscard]] bool wasFound(qint64 id) const;
    [[nodiscard]] bool wasFoundBy(int source, qint64 id) const;
    /// The stored places that were found by a leaf, or by any: each once.
    [[nodiscard]] std::vector<qint64> storedIds(int source) const;

private:
    /// The id of the stored place that a candidate is; -1 for none.
    qint64 storedIdOf(const FoundPlace &place, const QString &key, std::size_t expected);
    void add(int source, const FoundPlace &place, std::size_t expected);

    Store &m_store;
    const bool m_external;
    std::deque<CandidateRow> m_rows;
    QHash<QString, qint64> m_known; ///< Ids by what a place is known by at its source.
    /// The stored places of a type, where they are few, by the same.
    std::map<QString, std::optional<QHash<QString, qint64>>> m_stored;
    std::map<int, std::unordered_set<qint64>> m_found;
};

} // namespace placesd
