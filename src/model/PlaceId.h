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

/// Identity of a place: its id if it is stored, else its visible values. Used with a shared-data pointer.
class PlaceId : public QSharedData
{
public:
    static constexpr qint64 UNDEFINED_PERSISTED_ID = -1;

    PlaceId() = default;
    /// The identity of a place: id and visible values, for a full place also its auxiliary data.
    explicit PlaceId(const AbstractPlacePrivate &place);
    PlaceId(const PlaceId &other) = default;
    /// Assigns the identity; the reference count of this object is unchanged.
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
