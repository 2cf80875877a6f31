// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceHeader.h"

#include "manager/PlaceManagerPrivate.h"
#include "model/AddressPrivate.h"
#include "model/LocationPrivate.h"
#include "model/MapLink.h"
#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "places/Tags.h"

#include <iterator>

namespace vela::platform::places
{

namespace
{

struct MaskEntry
{
    const char *text;
    qint64 bit;
};

/// Tags with a bit in a header, in the order of the bits. The texts equal those of Tags, which are partly objects that
/// may not be initialized yet when another library's static objects call this.
constexpr MaskEntry TAG_BITS[] = {
    {"lbs-favorite", 0x1000},
    {"lbs-my-home", 0x2000},
    {"lbs-my-work", 0x4000},
    {"lbs-home", 0x8000},
    {"lbs-work", 0x10000},
    {"lbs-airport", 0x20000},
    {"lbs-automotive", 0x40000},
    {"lbs-bank", 0x80000},
    {"lbs-entertainment", 0x100000},
    {"lbs-health-care", 0x200000},
    {"lbs-lodging", 0x400000},
    {"lbs-personal-services", 0x800000},
    {"lbs-public-offices", 0x1000000},
    {"lbs-restaurant", 0x2000000},
    {"lbs-shopping", 0x4000000},
    {"lbs-travel", 0x8000000},
};

constexpr MaskEntry TYPE_BITS[] = {
    {"calendar", PlaceHeaderPrivate::HasCalendarData},
    {"contact", PlaceHeaderPrivate::HasContactData},
    {"poi", PlaceHeaderPrivate::HasPointOfInterestData},
};

/// The bit of a tag or type; 0 when there is none.
template <std::size_t Size>
qint64 bitOf(const MaskEntry (&table)[Size], const QString &text)
{
    for (const MaskEntry &entry : table) {
        if (text == QLatin1String(entry.text))
            return entry.bit;
    }
    return 0;
}

PlaceHeader::Presence presence(qint64 mask, qint64 anyBit, qint64 bit)
{
    if (!(mask & anyBit))
        return PlaceHeader::Absent;
    if (!bit)
        return PlaceHeader::Unknown;
    return mask & bit ? PlaceHeader::Present : PlaceHeader::Absent;
}

} // namespace

bool PlaceHeaderPrivate::operator==(const AbstractPlacePrivate &other) const
{
    return dynamic_cast<const PlaceHeaderPrivate *>(&other) && AbstractPlacePrivate::operator==(other);
}

bool PlaceHeaderPrivate::operator!=(const AbstractPlacePrivate &other) const
{
    return !(*this == other);
}

bool PlaceHeaderPrivate::isFavorite() const
{
    return hasTag(Tags::Favorite) == PlaceHeader::Present;
}

QString PlaceHeaderPrivate::primaryLocation() const
{
    const Address address = m_location.address();
    return address.isEmpty() ? m_location.virtualData() : AddressPrivate::privateFromPublic(&address)->unifiedLabel();
}

QUrl PlaceHeaderPrivate::mapUrl() const
{
    const Coordinates position = m_location.coordinates();
    if (!position.isValid())
        return {};

    constexpr int HEADER_SCALE = 4;
    MapLink link(*this, position);
    link.setScale(HEADER_SCALE);
    link.setAddressText(m_location.address().label());
    return link.toUrl();
}

int PlaceHeaderPrivate::hasTag(const QString &tag) const
{
    return presence(m_dataMask, HasAnyTag, bitOf(TAG_BITS, tag));
}

int PlaceHeaderPrivate::hasAuxiliaryData(const QString &type) const
{
    return presence(m_dataMask, HasAuxiliaryData, bitOf(TYPE_BITS, type));
}

void PlaceHeaderPrivate::setData(qint64 id, const QString &name, const QString &description, const QString &owner,
                                 const QString &source, quint64 lastUsedTime, qint64 dataMask,
                                 const QString &primaryEmailAddress, const QString &primaryPhoneNumber,
                                 const QUrl &primaryUrl, const QString &externalId, const QString &auxiliaryDataType,
                                 const Location &location, const QString &searchTerm, bool isPrivate,
                                 vela::system::SecurityPerimeter::Type securityPerimeter,
                                 SearchResultCertainty::Type certainty)
{
    m_id = id;
    m_name = name;
    m_description = description;
    m_owner = owner;
    m_source = source;
    m_lastUsedTime = lastUsedTime;
    m_dataMask = dataMask;
    m_primaryEmailAddress = primaryEmailAddress;
    m_primaryPhoneNumber = primaryPhoneNumber;
    m_primaryUrl = primaryUrl;
    m_externalId = externalId;
    m_auxiliaryDataType = auxiliaryDataType;
    m_location = location;
    m_searchTerm = searchTerm;
    m_isPrivate = isPrivate;
    m_securityPerimeter = securityPerimeter;
    m_certainty = certainty;
}

void PlaceHeaderPrivate::setData(const PlacePrivate &place)
{
    const auto &records = place.auxiliaryData();
    const auto &locations = place.locations();
    const AuxiliaryData record = records.isEmpty() ? AuxiliaryData() : records.first();
    // The first location with a position, else the first one.
    Location location = locations.isEmpty() ? Location() : locations.first();
    for (const Location &candidate : locations) {
        if (candidate.coordinates().isValid()) {
            location = candidate;
            break;
        }
    }
    setData(place.id(), place.name(), place.description(), place.owner(), place.source(), place.lastUsedTime(),
            maskOf(place), place.primaryEmailAddress(), place.primaryPhoneNumber(), place.primaryUrl(),
            record.externalId(), record.type(), location, place.searchTerm(), place.isPrivate(),
            place.securityPerimeter(), place.certainty());
}

qint64 PlaceHeaderPrivate::maskOf(const PlacePrivate &place)
{
    qint64 mask = 0;
    const auto setBit = [&mask](bool present, qint64 bit) { mask |= present ? bit : 0; };
    setBit(place.hasPhysicalLocation(), HasPhysicalLocation);
    setBit(place.hasCoordinates(), HasCoordinates);
    setBit(place.hasAuxiliaryData(), HasAuxiliaryData);
    setBit(place.hasTag(), HasAnyTag);
    for (const AuxiliaryData &record : place.auxiliaryData())
        mask |= bitOf(TYPE_BITS, record.type());
    for (const QString &tag : place.tags())
        mask |= bitOf(TAG_BITS, tag);
    return mask;
}

void PlaceHeaderPrivate::setTagBit(const QString &tag, bool present)
{
    if (present)
        m_dataMask |= HasAnyTag | bitOf(TAG_BITS, tag);
    else
        m_dataMask &= ~bitOf(TAG_BITS, tag);
}

void PlaceHeaderPrivate::resetIdFromContact(int first, int second, const QString &third)
{
    m_id = PlaceId::UNDEFINED_PERSISTED_ID;
    m_auxiliaryDataType = AuxiliaryData::TypeContact;
    m_externalId = QStringLiteral("%1,%2,").arg(first).arg(second) + third;
}

PlaceHeader *PlaceHeaderPrivate::createPublicHeader(Place &place)
{
    PlaceHeader *header = nullptr;
    (void)PlaceManagerPrivate().getHeader(place, header); // null on failure
    return header;
}

PlaceHeader::PlaceHeader()
{
    d = std::make_unique<PlaceHeaderPrivate>();
}

PlaceHeader::~PlaceHeader() = default;

PlaceHeaderPrivate *PlaceHeader::privatePart()
{
    return static_cast<PlaceHeaderPrivate *>(d.get());
}

const PlaceHeaderPrivate *PlaceHeader::privatePart() const
{
    return static_cast<const PlaceHeaderPrivate *>(d.get());
}

int PlaceHeader::hasTag(const QString &tag) const
{
    return privatePart()->hasTag(tag);
}

int PlaceHeader::hasAuxiliaryData(const QString &type) const
{
    return privatePart()->hasAuxiliaryData(type);
}

} // namespace vela::platform::places
