// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/Facets.h"

#include <QtCore/QString>

#include <vector>

namespace vela::platform::places
{
class AuxiliaryData;
class PlacePrivate;
class Provider;
} // namespace vela::platform::places

namespace placesd
{

/// What a place is found by besides its own row. Follows from the place alone.
struct IndexEntries
{
    /// A property of an auxiliary record, both texts without case and accents.
    struct Property
    {
        QString key;
        QString value; ///< Its beginning; see propertyPrefix().
    };
    /// What an auxiliary record is known by at its source.
    struct Origin
    {
        QString externalId;
        QString type;
        QString provider;
    };

    std::vector<Facet> facets; ///< Each once.
    std::vector<Property> properties;
    std::vector<Origin> origins;
    QString textKey; ///< See textKeyOf().
    bool isRoom = false;

    static IndexEntries of(const vela::platform::places::PlacePrivate &place);
};

/// The index key of all texts that a place is found by when its name does not suffice: name, aliases, description, tags
/// but for those of this library, and the addresses. The beginning of very long ones.
QString textKeyOf(const vela::platform::places::PlacePrivate &place);

/// The part of a property's value, or of what it is compared with, that the index keeps: enough to tell most values
/// apart. The rest is compared with the record.
QString propertyPrefix(const QString &value);

/// Name and URL of a provider, which identify it; empty for none.
QString keyOf(const vela::platform::places::Provider &provider);

/// What a record is known by among all sources; empty for one without an external id.
QString originKey(const vela::platform::places::AuxiliaryData &record);
QString originKey(const QString &type, const QString &provider, const QString &externalId);

} // namespace placesd
