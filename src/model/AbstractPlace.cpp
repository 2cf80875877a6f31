// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AbstractPlace.h"

#include "model/AbstractPlacePrivate.h"
#include "model/DebugParts.h"
#include "places/PlaceHeader.h"

#include <utility>

namespace vela::platform::places
{

AbstractPlacePrivate::~AbstractPlacePrivate() = default;

bool AbstractPlacePrivate::operator==(const AbstractPlacePrivate &other) const
{
    return this == &other
           || (m_name == other.m_name && m_description == other.m_description && m_source == other.m_source
               && m_isPrivate == other.m_isPrivate && m_securityPerimeter == other.m_securityPerimeter
               && m_certainty == other.m_certainty);
}

bool AbstractPlacePrivate::operator!=(const AbstractPlacePrivate &other) const
{
    return !(*this == other);
}

QString AbstractPlacePrivate::takeSearchTerm()
{
    return std::exchange(m_searchTerm, QString());
}

const QString AbstractPlace::SourceContactService = QStringLiteral("lbs-contact");
const QString AbstractPlace::SourceGeocodeService = QStringLiteral("lbs-geocode");
const QString AbstractPlace::SourceGeolink = QStringLiteral("lbs-geolink");
const QString AbstractPlace::SourceManualInput = QStringLiteral("lbs-manual-input");
const QString AbstractPlace::SourcePointOfInterestService = QStringLiteral("lbs-poi");

AbstractPlace::AbstractPlace() = default;
AbstractPlace::~AbstractPlace() = default;

qint64 AbstractPlace::id() const
{
    return d->id();
}

bool AbstractPlace::isPersisted() const
{
    return d->isPersisted();
}

QString AbstractPlace::name() const
{
    return d->name();
}

QString AbstractPlace::description() const
{
    return d->description();
}

QString AbstractPlace::owner() const
{
    return d->owner();
}

QString AbstractPlace::source() const
{
    return d->source();
}

quint64 AbstractPlace::lastUsedTime() const
{
    return d->lastUsedTime();
}

bool AbstractPlace::isPrivate() const
{
    return d->isPrivate();
}

vela::system::SecurityPerimeter::Type AbstractPlace::securityPerimeter() const
{
    return d->securityPerimeter();
}

SearchResultCertainty::Type AbstractPlace::certainty() const
{
    return d->certainty();
}

bool AbstractPlace::hasCoordinates() const
{
    return d->hasCoordinates();
}

bool AbstractPlace::hasPhysicalLocation() const
{
    return d->hasPhysicalLocation();
}

bool AbstractPlace::hasAuxiliaryData() const
{
    return d->hasAuxiliaryData();
}

bool AbstractPlace::hasTag() const
{
    return d->hasTag();
}

bool AbstractPlace::isFavorite() const
{
    return d->isFavorite();
}

QString AbstractPlace::primaryEmailAddress() const
{
    return d->primaryEmailAddress();
}

QString AbstractPlace::primaryLocation() const
{
    return d->primaryLocation();
}

Address AbstractPlace::primaryAddress() const
{
    return d->primaryAddress();
}

Coordinates AbstractPlace::primaryCoordinates() const
{
    return d->primaryCoordinates();
}

QString AbstractPlace::primaryPhoneNumber() const
{
    return d->primaryPhoneNumber();
}

QUrl AbstractPlace::primaryUrl() const
{
    return d->primaryUrl();
}

QUrl AbstractPlace::mapUrl() const
{
    return d->mapUrl();
}

QDebug operator<<(QDebug debug, const AbstractPlace &place)
{
    DebugParts parts(debug, qobject_cast<const PlaceHeader *>(&place) ? "PlaceHeader" : "Place");
    if (place.isPersisted())
        parts.addLabelled("id", place.id());
    parts.addIf(!place.name().isEmpty(), place.name()).addIf(place.hasCoordinates(), place.primaryCoordinates());
    return debug;
}

QDebug operator<<(QDebug debug, const AbstractPlace *place)
{
    if (place)
        return debug << *place;
    DebugParts(debug, "Place").add("null");
    return debug;
}

} // namespace vela::platform::places
