// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "places/Provider.h"

#include <QtCore/QHash>
#include <QtCore/QSharedData>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class AbstractPlacePrivate;

/// What identifies a place: its number when it is stored, else what it shows. Held through a shared-data pointer.
class PlaceId : public QSharedData
{
public:
    static constexpr qint64 UNDEFINED_PERSISTED_ID = -1;

    PlaceId() = default;
    /// The identity of a place. A header gives its number and what it shows, a full place its auxiliary data as well.
    explicit PlaceId(const AbstractPlacePrivate &place);
    PlaceId(const PlaceId &other) = default;
    /// Assigns the identity; how many share this object, which the base counts, stays its own.
    PlaceId &operator=(const PlaceId &other);
    ~PlaceId() = default;

    bool isPersisted() const { return persistedId != UNDEFINED_PERSISTED_ID; }
    bool isCompositeId() const;
    bool isValid() const { return isPersisted() || !externalIds.isEmpty() || isCompositeId(); }
    bool isComplete() const { return complete; }

    qint64 persistedId = UNDEFINED_PERSISTED_ID;
    QHash<Provider, QString> externalIds;
    QStringList auxiliaryDataTypes;
    QString name;
    QString location;
    QString phoneNumber;
    Coordinates coordinates;
    bool complete = false;
    bool restaurant = false;
};

} // namespace vela::platform::places
