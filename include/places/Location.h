// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>
#include <places/BoundingBox.h>
#include <places/Coordinates.h>
#include <places/VirtualLocationType.h>

namespace vela::platform::places
{

class LocationPrivate;

/// A location of a place: an address, a position, or both; or virtual data for a place without a position.
class PLACES_EXPORT Location
{
public:
    /// An empty location.
    Location();
    /// A location with the id that the service stores it under.
    explicit Location(qint64 id);
    /// Copies all values except the zoom, which is -1 in the copy.
    Location(const Location &other);
    /// Moves all values except the zoom, like a copy. `other` becomes an empty location.
    Location(Location &&other) noexcept;
    /// Assigns all values except the zoom, which is unchanged.
    Location &operator=(const Location &other);
    Location &operator=(Location &&other) noexcept;
    virtual ~Location();

    /// Swaps all values except the zoom, without a copy.
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

    /// Data of a location without a position, such as a conference number; empty when unset.
    [[nodiscard]] QString virtualData() const;
    void setVirtualData(const QString &data);

    /// Kind of the virtual data.
    [[nodiscard]] VirtualLocationType::Type virtualDataType() const;
    void setVirtualDataType(VirtualLocationType::Type type);

    /// Map zoom for displaying this object; -1 when unset. Not copied.
    [[nodiscard]] int zoom() const;
    void setZoom(int zoom);

    /// Extent on the map; invalid when unset.
    [[nodiscard]] BoundingBox boundingBox() const;
    void setBoundingBox(const BoundingBox &box);

    /// Compares address, coordinates, virtual data and its type, and bounding box, but not id and zoom: two stored
    /// copies are equal.
    bool operator==(const Location &other) const;
    bool operator!=(const Location &other) const;

private:
    friend class LocationPrivate;
    ValuePointer<LocationPrivate> d;
};

/// For debugging: id, position, address and other set values.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Location &location);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Location, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Location)
