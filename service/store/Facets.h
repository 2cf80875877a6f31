// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/StatementPool.h"
#include "text/TextKeys.h"

#include <QtCore/QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// What a text says of a place. The numbers are stored.
enum class FacetKind
{
    Owner = 1, ///< Of each place one, which may be empty.
    Tag = 2,
    Type = 3,        ///< Of an auxiliary record.
    Quality = 4,     ///< ROOM or PRIVATE.
    Persistence = 5, ///< The persistence mask, in digits; counted, but no places are listed.
    PropertyKey = 6  ///< A key of an auxiliary record, without case and accents; counted only, as well.
};

/// A quality: a contact or an appointment says of itself that it is a room.
constexpr char ROOM[] = "room";
/// A quality: the place is for the owner's channel alone.
constexpr char PRIVATE[] = "private";

/// Whether the places of a facet are listed.
constexpr bool isListed(FacetKind kind)
{
    return kind < FacetKind::Persistence;
}

/// A text about a place.
struct Facet
{
    FacetKind kind;
    QString text;
};

/// The numbers of the facets of a place, as a row keeps them.
class FacetNumbers
{
public:
    /// Numbers are written in ascending order, 7 bits a byte, least significant first (LEB128, DWARF 4, 7.6).
    static std::string pack(std::vector<qint64> numbers);
    /// Reads as far as the bytes are numbers.
    static std::vector<qint64> unpack(std::string_view packed);
    /// Whether one of `numbers`, which are sorted, is there.
    static bool containAny(std::string_view packed, const std::vector<qint64> &numbers);
};

/// The texts that places are found by as they are, each stored once, with the number of its places.
class Facets
{
public:
    explicit Facets(StatementPool &statements)
        : m_statements(statements)
    {}

    /// Counts one more place with this facet. Returns the number of the facet.
    qint64 add(const Facet &facet);
    /// Counts one less; a facet without places is gone.
    void release(qint64 number);

    /// The numbers, sorted, of the facets of a kind whose text passes a test. Cost follows the number of different
    /// texts only when the test is not for equality.
    std::vector<qint64> find(FacetKind kind, const TextTest &test);
    /// The number of places that have this facet.
    qint64 count(qint64 number);
    /// The number of places that have a facet of this kind and text; 0 when there is no such facet.
    qint64 count(FacetKind kind, const std::string &text);
    /// All texts of a kind, in the order of their bytes.
    QStringList texts(FacetKind kind);

private:
    StatementPool &m_statements;
};

} // namespace placesd
