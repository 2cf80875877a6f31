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

/// Index entries of a place in addition to its row. Computed from the place alone.
struct IndexEntries
{
    /// A property of an auxiliary record; both texts without case and accents.
    struct Property
    {
        QString key;
        QString value; ///< A prefix; see propertyPrefix().
    };
    /// Identifies an auxiliary record at its source.
    struct Origin
    {
        QString externalId;
        QString type;
        QString provider;
    };

    std::vector<Facet> facets; ///< Without duplicates.
    std::vector<Property> properties;
    std::vector<Origin> origins;
    QString textKey; ///< See textKeyOf().
    bool isRoom = false;

    static IndexEntries of(const vela::platform::places::PlacePrivate &place);
};

/// The index key of all searched texts of a place: name, aliases, description, tags except internal ones, and
/// addresses. Very long texts are cut.
QString textKeyOf(const vela::platform::places::PlacePrivate &place);

/// The prefix of a property's value, or of a text compared with it, in the index; long enough to distinguish most
/// values. The rest is compared with the record.
QString propertyPrefix(const QString &value);

/// Name and URL of a provider, which identify it; empty for no provider.
QString keyOf(const vela::platform::places::Provider &provider);

/// Identifies a record among all sources; empty for a record without an external id.
QString originKey(const vela::platform::places::AuxiliaryData &record);
QString originKey(const QString &type, const QString &provider, const QString &externalId);

} // namespace placesd
