// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/AddressPrivate.h"
#include "model/MapLink.h"
#include "model/PlacePrivate.h"
#include "places/ContactAuxiliaryData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/Tags.h"
#include "places/Utilities.h"

#include <algorithm>

namespace vela::platform::places
{

namespace
{

/// The alias that is added and removed together with a tag; empty for most tags.
QString aliasOfTag(const QString &tag)
{
    if (tag == Tags::MyHome)
        return QStringLiteral("Home");
    if (tag == Tags::MyWork)
        return QStringLiteral("Work");
    return {};
}

bool equalAsSets(const QStringList &a, const QStringList &b)
{
    return a.size() == b.size() && Utilities::equalsByValue(a, b);
}

template <typename List>
void removeIfThere(List &list, int index)
{
    if (index >= 0 && index < list.size())
        list.removeAt(index);
}

} // namespace

bool PlacePrivate::operator==(const AbstractPlacePrivate &other) const
{
    const auto *place = dynamic_cast<const PlacePrivate *>(&other);
    return place && m_name == place->m_name && m_description == place->m_description
           && m_isPrivate == place->m_isPrivate && m_usageCount == place->m_usageCount && m_source == place->m_source
           && m_expiredTime == place->m_expiredTime && equalAsSets(m_tags, place->m_tags)
           && equalAsSets(m_aliases, place->m_aliases) && m_locations == place->m_locations
           && m_auxiliaryData == place->m_auxiliaryData;
}

bool PlacePrivate::operator!=(const AbstractPlacePrivate &other) const
{
    return !(*this == other);
}

bool PlacePrivate::hasCoordinates() const
{
    return primaryCoordinates().isValid();
}

bool PlacePrivate::hasPhysicalLocation() const
{
    return std::any_of(m_locations.begin(), m_locations.end(), [](const Location &location) {
        return location.coordinates().isValid() || !location.address().isEmpty();
    });
}

bool PlacePrivate::hasAuxiliaryData() const
{
    return !m_auxiliaryData.isEmpty();
}

bool PlacePrivate::hasTag() const
{
    return !m_tags.isEmpty();
}

bool PlacePrivate::isFavorite() const
{
    return hasTag(Tags::Favorite);
}

QString PlacePrivate::primaryEmailAddress() const
{
    return primaryAuxiliaryValue(PrimaryField::EmailAddress);
}

QString PlacePrivate::primaryLocation() const
{
    QString virtualData;
    for (const Location &location : m_locations) {
        const Address address = location.address();
        if (!address.isEmpty())
            return AddressPrivate::privateFromPublic(&address)->unifiedLabel();
        if (!location.virtualData().isEmpty())
            virtualData = location.virtualData();
    }
    return virtualData;
}

Address PlacePrivate::primaryAddress() const
{
    for (const Location &location : m_locations) {
        if (Address address = location.address(); !address.isEmpty())
            return address;
    }
    return {};
}

Coordinates PlacePrivate::primaryCoordinates() const
{
    for (const Location &location : m_locations) {
        if (Coordinates coordinates = location.coordinates(); coordinates.isValid())
            return coordinates;
    }
    return {};
}

QString PlacePrivate::primaryPhoneNumber() const
{
    return primaryAuxiliaryValue(PrimaryField::PhoneNumber);
}

QUrl PlacePrivate::primaryUrl() const
{
    return QUrl(primaryAuxiliaryValue(PrimaryField::Url));
}

QUrl PlacePrivate::mapUrl() const
{
    const auto positioned = std::find_if(m_locations.begin(), m_locations.end(),
                                         [](const Location &location) { return location.coordinates().isValid(); });
    if (positioned == m_locations.end())
        return {};

    const Address address = positioned->address();
    MapLink link(*this, positioned->coordinates());
    link.setScale(MapLink::scaleOf(address));
    link.setAddressText(AddressPrivate::privateFromPublic(&address)->unifiedLabel());
    link.setAddressParts(address);
    return link.toUrl();
}

bool PlacePrivate::addTag(const QString &tag)
{
    if (hasTag(tag))
        return false;
    appendTag(tag);
    return true;
}

void PlacePrivate::appendTag(const QString &tag)
{
    m_tags.append(tag);
    if (const QString alias = aliasOfTag(tag); !alias.isEmpty())
        addAlias(alias);
}

bool PlacePrivate::removeTag(const QString &tag)
{
    // A place of another program may contain the tag several times.
    if (m_tags.removeAll(tag) == 0)
        return false;
    if (const QString alias = aliasOfTag(tag); !alias.isEmpty())
        removeAlias(alias);
    return true;
}

void PlacePrivate::addAlias(const QString &alias)
{
    if (!m_aliases.contains(alias))
        m_aliases.append(alias);
}

bool PlacePrivate::removeLocation(int index)
{
    removeIfThere(m_locations, index);
    return true;
}

bool PlacePrivate::removeAuxiliaryData(int index)
{
    removeIfThere(m_auxiliaryData, index);
    return true;
}

bool PlacePrivate::hasAuxiliaryData(const QString &type) const
{
    return std::any_of(m_auxiliaryData.begin(), m_auxiliaryData.end(),
                       [&type](const AuxiliaryData &data) { return data.type() == type; });
}

bool PlacePrivate::setSecurityPerimeter(vela::system::SecurityPerimeter::Type perimeter)
{
    if (isPersisted())
        return false;
    m_securityPerimeter = perimeter;
    return true;
}

void PlacePrivate::clearPersistedStates()
{
    setId(PlaceId::UNDEFINED_PERSISTED_ID);
    for (AuxiliaryData &data : m_auxiliaryData)
        AuxiliaryDataPrivate::fromPublic(data)->setId(PlaceId::UNDEFINED_PERSISTED_ID);
    setCreatedTime(0);
    setUpdatedTime(0);
    setPersistenceMask(ExplicitlySaved);
    setUsageCount(0);
}

QString PlacePrivate::fieldValue(const AuxiliaryData &data, PrimaryField field)
{
    if (data.type() == AuxiliaryData::TypeContact) {
        const ContactAuxiliaryData contact(data);
        switch (field) {
        case PrimaryField::EmailAddress:
            return contact.emailAddress();
        case PrimaryField::Url:
            return contact.url().toString();
        case PrimaryField::PhoneNumber:
            for (const QString &number : {contact.mobilePhone(), contact.homePhone(), contact.workPhone()}) {
                if (!number.isEmpty())
                    return number;
            }
        }
    } else if (data.type() == AuxiliaryData::TypePointOfInterest) {
        const PointOfInterestAuxiliaryData poi(data);
        switch (field) {
        case PrimaryField::EmailAddress:
            return poi.emailAddress();
        case PrimaryField::Url:
            return poi.url().toString();
        case PrimaryField::PhoneNumber:
            return poi.phoneNumber();
        }
    }
    return {};
}

QString PlacePrivate::primaryAuxiliaryValue(PrimaryField field) const
{
    // A contact record has priority at any position of the list; otherwise the first record with a value.
    QString first;
    for (const AuxiliaryData &data : m_auxiliaryData) {
        QString value = fieldValue(data, field);
        if (!value.isEmpty() && data.type() == AuxiliaryData::TypeContact)
            return value;
        if (first.isEmpty())
            first = value;
    }
    return first;
}

Place::Place()
{
    d = std::make_unique<PlacePrivate>();
}

Place::~Place() = default;

PlacePrivate *Place::privatePart()
{
    return static_cast<PlacePrivate *>(d.get());
}

const PlacePrivate *Place::privatePart() const
{
    return static_cast<const PlacePrivate *>(d.get());
}

void Place::setName(const QString &name)
{
    privatePart()->setName(name);
}

void Place::setDescription(const QString &description)
{
    privatePart()->setDescription(description);
}

void Place::setOwner(const QString &owner)
{
    privatePart()->setOwner(owner);
}

void Place::setSource(const QString &source)
{
    privatePart()->setSource(source);
}

void Place::setPrivate(bool isPrivate)
{
    privatePart()->setPrivate(isPrivate);
}

bool Place::addTag(const QString &tag)
{
    return privatePart()->addTag(tag);
}

bool Place::removeTag(const QString &tag)
{
    return privatePart()->removeTag(tag);
}

bool Place::hasTag(const QString &tag) const
{
    return privatePart()->hasTag(tag);
}

int Place::tagCount() const
{
    return static_cast<int>(privatePart()->tags().size());
}

QString Place::tag(int index) const
{
    return privatePart()->tags().at(index);
}

void Place::addAlias(const QString &alias)
{
    privatePart()->addAlias(alias);
}

void Place::removeAlias(const QString &alias)
{
    privatePart()->removeAlias(alias);
}

QStringList Place::aliases() const
{
    return privatePart()->aliases();
}

void Place::addLocation(const Location &location)
{
    privatePart()->addLocation(location);
}

void Place::replaceLocation(int index, const Location &location)
{
    privatePart()->replaceLocation(index, location);
}

bool Place::removeLocation(int index)
{
    return privatePart()->removeLocation(index);
}

bool Place::removeLocation(const Location &location)
{
    return privatePart()->removeLocation(location);
}

int Place::locationCount() const
{
    return static_cast<int>(privatePart()->locations().size());
}

Location Place::location(int index) const
{
    return privatePart()->locations().at(index);
}

void Place::addAuxiliaryData(const AuxiliaryData &data)
{
    privatePart()->addAuxiliaryData(data);
}

void Place::replaceAuxiliaryData(int index, const AuxiliaryData &data)
{
    privatePart()->replaceAuxiliaryData(index, data);
}

bool Place::removeAuxiliaryData(int index)
{
    return privatePart()->removeAuxiliaryData(index);
}

bool Place::removeAuxiliaryData(const AuxiliaryData &data)
{
    return privatePart()->removeAuxiliaryData(data);
}

int Place::auxiliaryDataCount() const
{
    return static_cast<int>(privatePart()->auxiliaryData().size());
}

AuxiliaryData Place::auxiliaryData(int index) const
{
    return privatePart()->auxiliaryData().at(index);
}

bool Place::hasAuxiliaryData(const QString &type) const
{
    return privatePart()->hasAuxiliaryData(type);
}

bool Place::isValid() const
{
    return !privatePart()->locations().isEmpty();
}

int Place::usageCount() const
{
    return privatePart()->usageCount();
}

quint64 Place::creationTime() const
{
    return privatePart()->createdTime();
}

quint64 Place::updateTime() const
{
    return privatePart()->updatedTime();
}

quint64 Place::expiryTime() const
{
    return privatePart()->expiredTime();
}

void Place::setExpiredTime(quint64 time)
{
    privatePart()->setExpiredTime(time);
}

} // namespace vela::platform::places
