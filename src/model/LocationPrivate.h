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
    /// Copies all values except the zoom: a copied location is drawn at the map's own scale.
    LocationPrivate(const LocationPrivate &other);
    LocationPrivate &operator=(const LocationPrivate &other);

    static LocationPrivate *privateFromPublic(Location *location) { return location->d.get(); }
    static const LocationPrivate *privateFromPublic(const Location *location) { return location->d.get(); }

    void setId(qint64 id) { m_id = id; }

    /// The address from which the coordinates were geocoded, as one line; empty for given coordinates.
    const QString &addressUsedToGeocode() const { return m_addressUsedToGeocode; }
    void setAddressUsedToGeocode(const QString &address) { m_addressUsedToGeocode = address; }

    /// Sets the position. A non-empty `resolved` address of a geocoder replaces the address, and the previous one is
    /// kept as the address used to geocode.
    void setCoordinates(const Coordinates &point, const Address &resolved);

    /// True with an address but without a valid position.
    bool needGeocode() const { return !m_address.isEmpty() && !m_coordinates.isValid(); }

    /// True without an address, a position and virtual data.
    bool isUnset() const;

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
