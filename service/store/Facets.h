// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/StatementPool.h"
#include "text/TextKeys.h"

#include <QtCore/QString>

#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// Kind of a facet. The numbers are stored.
enum class FacetKind
{
    Owner = 1, ///< One per place; may be empty.
    Tag = 2,
    Type = 3,        ///< Of an auxiliary record.
    Quality = 4,     ///< ROOM or PRIVATE.
    Persistence = 5, ///< The persistence mask as decimal text; only counted, without a list of places.
    PropertyKey = 6  ///< A key of an auxiliary record, without case and accents; only counted.
};

/// Quality: a contact or an appointment is marked as a room.
constexpr char ROOM[] = "room";
/// Quality: the place is visible on the owner's channel only.
constexpr char PRIVATE[] = "private";

/// Whether there is a list of places for each facet.
constexpr bool isListed(FacetKind kind)
{
    return kind < FacetKind::Persistence;
}

/// A text that describes a place.
struct Facet
{
    FacetKind kind;
    QString text;
};

/// The facet numbers of a place, as stored in its row.
class FacetNumbers
{
public:
    /// Numbers are sorted and packed with 7 bits per byte, least significant first (LEB128, DWARF 4, 7.6).
    static std::string pack(std::vector<qint64> numbers);
    /// Reads numbers up to the first invalid byte.
    static std::vector<qint64> unpack(std::string_view packed);
    /// Whether one of the sorted `numbers` is contained.
    static bool containAny(std::string_view packed, const std::vector<qint64> &numbers);
};

/// Texts by which places are found exactly; each is stored once, with a count of its places.
class Facets
{
public:
    explicit Facets(StatementPool &statements)
        : m_statements(statements)
    {}

    /// Increments the count of a facet. Returns its number.
    qint64 add(const Facet &facet);
    /// Decrements the count; removes the facet at 0.
    void release(qint64 number);

    /// The sorted numbers of the facets of a kind that pass a test. An equality test uses an index; other tests read
    /// all texts of the kind.
    std::vector<qint64> find(FacetKind kind, const TextTest &test);
    /// The number of places with this facet.
    qint64 count(qint64 number);
    /// The number of places with a facet of this kind and text; 0 when there is no such facet.
    qint64 count(FacetKind kind, const std::string &text);
    /// All texts of a kind, in byte order.
    QStringList texts(FacetKind kind);

private:
    StatementPool &m_statements;
};

} // namespace placesd
