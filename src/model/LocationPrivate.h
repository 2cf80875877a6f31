// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Location.h"

namespace vela::platform::places
{

class LocationPrivate
{
public:
    static constexpr int NO_ZOOM = -1;

    LocationPrivate() = default;
    explicit LocationPrivate(qint64 id)
        : m_id(id)
    {}
    /// Copies everything but the zoom, which stays with the object it was set on: a copied location is drawn at the
    /// map's own scale.
    LocationPrivate(const LocationPrivate &other);
    LocationPrivate &operator=(const LocationPrivate &other);

    static LocationPrivate *privateFromPublic(Location *location) { return location->d.get(); }
    static const LocationPrivate *privateFromPublic(const Location *location) { return location->d.get(); }

    void setId(qint64 id) { m_id = id; }

    /// The address as one line from which the coordinates were found; empty when they were given.
    const QString &addressUsedToGeocode() const { return m_addressUsedToGeocode; }
    void setAddressUsedToGeocode(const QString &address) { m_addressUsedToGeocode = address; }

    /// Takes a position and, unless `resolved` is empty, the address that a geocoder resolved it from; the address that
    /// stood here until now is remembered as the one that was used to geocode.
    void setCoordinates(const Coordinates &point, const Address &resolved);

    /// True when there is an address but no valid position.
    bool needGeocode() const { return !m_address.isEmpty() && !m_coordinates.isValid(); }

    /// True when there is no address, no position and no virtual data.
    bool saysNothing() const;

    bool operator==(const LocationPrivate &other) const;

    qint64 m_id = -1;
    Address m_address;
    Coordinates m_coordinates;
    QString m_virtualData;
    VirtualLocationType::Type m_virtualDataType = VirtualLocationType::None;
    int m_zoom = NO_ZOOM;
    QString m_addressUsedToGeocode;
    BoundingBox m_boundingBox;
};

} // namespace vela::platform::places
