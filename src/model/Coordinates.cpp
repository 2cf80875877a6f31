// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Coordinates.h"

#include "model/CoordinatesPrivate.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

bool CoordinatesPrivate::isValid() const
{
    // Comparisons with NaN are false.
    return latitude >= -90.0 && latitude <= 90.0 && longitude >= -180.0 && longitude <= 180.0;
}

bool CoordinatesPrivate::operator==(const CoordinatesPrivate &other) const
{
    return equals(latitude, other.latitude) && equals(longitude, other.longitude) && equals(altitude, other.altitude);
}

Coordinates::Coordinates()
    : d(new CoordinatesPrivate)
{}

Coordinates::Coordinates(double latitude, double longitude)
    : Coordinates()
{
    setLatitude(latitude);
    setLongitude(longitude);
}

Coordinates::Coordinates(const Coordinates &other) = default;
Coordinates::Coordinates(Coordinates &&other) noexcept = default;
Coordinates &Coordinates::operator=(const Coordinates &other) = default;
Coordinates &Coordinates::operator=(Coordinates &&other) noexcept = default;
Coordinates::~Coordinates() = default;

double Coordinates::latitude() const
{
    return d->latitude;
}

void Coordinates::setLatitude(double degrees)
{
    d->latitude = degrees;
}

double Coordinates::longitude() const
{
    return d->longitude;
}

void Coordinates::setLongitude(double degrees)
{
    d->longitude = degrees;
}

double Coordinates::altitude() const
{
    return d->altitude;
}

void Coordinates::setAltitude(double metres)
{
    d->altitude = metres;
}

float Coordinates::horizontalAccuracy() const
{
    return d->horizontalAccuracy;
}

void Coordinates::setHorizontalAccuracy(float metres)
{
    d->horizontalAccuracy = metres;
}

float Coordinates::verticalAccuracy() const
{
    return d->verticalAccuracy;
}

void Coordinates::setVerticalAccuracy(float metres)
{
    d->verticalAccuracy = metres;
}

bool Coordinates::isValid() const
{
    return d->isValid();
}

bool Coordinates::operator==(const Coordinates &other) const
{
    return *d == *other.d;
}

bool Coordinates::operator!=(const Coordinates &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const Coordinates &point)
{
    DebugParts parts(debug, "Coordinates");
    if (!qIsNaN(point.latitude()) || !qIsNaN(point.longitude()))
        parts.addNumber(point.latitude()).addNumber(point.longitude());
    parts.addNumber(point.altitude(), " m");
    return debug;
}

} // namespace vela::platform::places
