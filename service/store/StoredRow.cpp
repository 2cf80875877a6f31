// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/StoredRow.h"

#include "model/PlacePrivate.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

namespace placesd
{

using vela::platform::places::Coordinates;
using vela::platform::places::PlacePrivate;

/// Columns of the table `place`, in order.
enum StoredRow::Column : int
{
    Id,
    NameKey,
    SortKey,
    Favorite,
    Contact,
    Room,
    SecurityPerimeter,
    Mask,
    UsageCount,
    LastUsed,
    Created,
    Updated,
    Latitude,
    Longitude,
    FacetList
};

qint64 StoredRow::number(Column column) const
{
    return m_statement.getColumn(column).getInt64();
}

std::string_view StoredRow::bytes(Column column) const
{
    return viewOf(m_statement.getColumn(column));
}

qint64 StoredRow::id() const
{
    return number(Id);
}

std::string_view StoredRow::nameKey() const
{
    return bytes(NameKey);
}

std::string_view StoredRow::sortKey() const
{
    return bytes(SortKey);
}

vela::system::SecurityPerimeter::Type StoredRow::perimeter() const
{
    return static_cast<vela::system::SecurityPerimeter::Type>(number(SecurityPerimeter));
}

int StoredRow::persistenceMask() const
{
    return static_cast<int>(number(Mask));
}

qint64 StoredRow::usageCount() const
{
    return number(UsageCount);
}

qint64 StoredRow::lastUsedTime() const
{
    return number(LastUsed);
}

qint64 StoredRow::creationTime() const
{
    return number(Created);
}

qint64 StoredRow::updateTime() const
{
    return number(Updated);
}

Coordinates StoredRow::position() const
{
    const SQLite::Column latitude = m_statement.getColumn(Latitude);
    if (latitude.isNull())
        return {};
    return {latitude.getDouble(), m_statement.getColumn(Longitude).getDouble()};
}

std::string_view StoredRow::facets() const
{
    return bytes(FacetList);
}

bool StoredRow::passes(const FacetTest &test) const
{
    return !test.numbers->empty() && FacetNumbers::containAny(facets(), *test.numbers);
}

bool StoredRow::passes(const PropertyTest &test) const
{
    const auto place = m_store.readablePlace(id());
    return place
           && test(PlacePrivate::privateFromPublic(place.get())->auxiliaryData(), [this] { m_store.requireTime(); });
}

bool StoredRow::passes(const TermTest &test) const
{
    return test.isOfNames() ? test(nameKey()) : test(m_store.textKey(id()));
}

} // namespace placesd
