// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>
#include <places/BoundingBox.h>
#include <places/Coordinates.h>
#include <places/VirtualLocationType.h>

namespace vela::platform::places
{

class LocationPrivate;

/// One whereabouts of a place: an address, a position, or both; or virtual data for a place that is nowhere on a map.
class PLACES_EXPORT Location
{
public:
    /// A location of which nothing is known.
    Location();
    /// A location that the service stores under `id`.
    explicit Location(qint64 id);
    /// Copies everything but the zoom, which reads -1 in the copy.
    Location(const Location &other);
    /// Takes everything but the zoom, as a copy does. `other` is a location of which nothing is known from then on.
    Location(Location &&other) noexcept;
    /// Assigns everything but the zoom, which stays as it is.
    Location &operator=(const Location &other);
    Location &operator=(Location &&other) noexcept;
    virtual ~Location();

    /// Exchanges everything but the zoom without a copy.
    void swap(Location &other) noexcept;
    friend void swap(Location &left, Location &right) noexcept { left.swap(right); }

    /// Number given by the service; -1 when not stored.
    [[nodiscard]] qint64 id() const;

    /// Postal address; empty when unset.
    [[nodiscard]] Address address() const;
    void setAddress(const Address &address);

    /// Position; invalid when unset.
    [[nodiscard]] Coordinates coordinates() const;
    void setCoordinates(const Coordinates &coordinates);

    /// Data of a location that is nowhere on a map, such as a conference number; empty when unset.
    [[nodiscard]] QString virtualData() const;
    void setVirtualData(const QString &data);

    /// Kind of the virtual data.
    [[nodiscard]] VirtualLocationType::Type virtualDataType() const;
    void setVirtualDataType(VirtualLocationType::Type type);

    /// Map zoom at which this object is to be shown; -1 when unset. It belongs to this object and never to its copies.
    [[nodiscard]] int zoom() const;
    void setZoom(int zoom);

    /// Extent on the map; invalid when unset.
    [[nodiscard]] BoundingBox boundingBox() const;
    void setBoundingBox(const BoundingBox &box);

    /// Compares address, coordinates, virtual data and its type, and bounding box. Id and zoom are not compared: the
    /// same whereabouts stored twice are equal.
    bool operator==(const Location &other) const;
    bool operator!=(const Location &other) const;

private:
    friend class LocationPrivate;
    ValuePointer<LocationPrivate> d;
};

/// For debugging: number, position, address and what else is set.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Location &location);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Location, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Location)
