// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Location.h"

#include "model/AddressPrivate.h"
#include "model/DebugParts.h"
#include "model/LocationPrivate.h"

#include <utility>

namespace vela::platform::places
{

LocationPrivate::LocationPrivate(const LocationPrivate &other)
    : LocationPrivate()
{
    *this = other;
}

LocationPrivate &LocationPrivate::operator=(const LocationPrivate &other)
{
    m_id = other.m_id;
    m_address = other.m_address;
    m_coordinates = other.m_coordinates;
    m_virtualData = other.m_virtualData;
    m_virtualDataType = other.m_virtualDataType;
    m_addressUsedToGeocode = other.m_addressUsedToGeocode;
    m_boundingBox = other.m_boundingBox;
    return *this;
}

void LocationPrivate::setCoordinates(const Coordinates &point, const Address &resolved)
{
    m_coordinates = point;
    if (resolved.isEmpty())
        return;
    m_addressUsedToGeocode = AddressPrivate::privateFromPublic(&m_address)->unifiedLabel();
    m_address = resolved;
}

bool LocationPrivate::isUnset() const
{
    return m_address.isEmpty() && m_coordinates == Coordinates() && m_virtualData.isEmpty();
}

bool LocationPrivate::operator==(const LocationPrivate &other) const
{
    return m_address == other.m_address && m_coordinates == other.m_coordinates
           && m_virtualDataType == other.m_virtualDataType && m_virtualData == other.m_virtualData
           && m_boundingBox == other.m_boundingBox;
}

Location::Location()
    : d(new LocationPrivate)
{}

Location::Location(qint64 id)
    : d(new LocationPrivate(id))
{}

Location::Location(const Location &other) = default;
Location &Location::operator=(const Location &other) = default;
Location::~Location() = default;

Location::Location(Location &&other) noexcept
    : d(std::move(other.d))
{
    if (zoom() != LocationPrivate::NO_ZOOM)
        setZoom(LocationPrivate::NO_ZOOM);
}

Location &Location::operator=(Location &&other) noexcept
{
    if (this != &other)
        Location(std::move(other)).swap(*this);
    return *this;
}

void Location::swap(Location &other) noexcept
{
    const int ownZoom = zoom();
    const int otherZoom = other.zoom();
    d.swap(other.d);
    if (ownZoom == otherZoom)
        return;
    setZoom(ownZoom);
    other.setZoom(otherZoom);
}

qint64 Location::id() const
{
    return d->m_id;
}

Address Location::address() const
{
    return d->m_address;
}

void Location::setAddress(const Address &address)
{
    d->m_address = address;
}

Coordinates Location::coordinates() const
{
    return d->m_coordinates;
}

void Location::setCoordinates(const Coordinates &coordinates)
{
    d->setCoordinates(coordinates, Address());
}

QString Location::virtualData() const
{
    return d->m_virtualData;
}

void Location::setVirtualData(const QString &data)
{
    d->m_virtualData = data;
}

VirtualLocationType::Type Location::virtualDataType() const
{
    return d->m_virtualDataType;
}

void Location::setVirtualDataType(VirtualLocationType::Type type)
{
    d->m_virtualDataType = type;
}

int Location::zoom() const
{
    return d->m_zoom;
}

void Location::setZoom(int zoom)
{
    d->m_zoom = zoom;
}

BoundingBox Location::boundingBox() const
{
    return d->m_boundingBox;
}

void Location::setBoundingBox(const BoundingBox &box)
{
    d->m_boundingBox = box;
}

bool Location::operator==(const Location &other) const
{
    return *d == *other.d;
}

bool Location::operator!=(const Location &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const Location &location)
{
    DebugParts parts(debug, "Location");
    if (location.id() != -1)
        parts.addLabelled("id", location.id());
    parts.addIf(location.coordinates() != Coordinates(), location.coordinates())
        .addIf(!location.address().isEmpty(), location.address());
    if (!location.virtualData().isEmpty())
        parts.addName(location.virtualDataType()).add(location.virtualData());
    parts.addIf(location.boundingBox().isValid(), location.boundingBox());
    if (location.zoom() != LocationPrivate::NO_ZOOM)
        parts.addLabelled("zoom", location.zoom());
    return debug;
}

} // namespace vela::platform::places
