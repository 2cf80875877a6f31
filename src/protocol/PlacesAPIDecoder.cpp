// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIDecoder.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/AddressPrivate.h"
#include "model/BoundingBoxPrivate.h"
#include "model/LocationPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "model/ProviderData.h"
#include "search/SearchHandlePrivate.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace orix_places_protocol
{

using namespace vela::platform::places;

namespace
{

/// Maximum number of locations of a place that are counted but not written.
constexpr int MAX_UNWRITTEN_LOCATIONS = 16;

/// Appends an empty element. Copying an existing value takes half the time of creating one. The value is never
/// destroyed: a detached worker may still decode while static objects are destroyed.
template <typename List>
void appendBlank(List &list)
{
    static const auto &blank = *new typename List::value_type{};
    list.append(blank);
}

} // namespace

// One field per line, in wire order.
// clang-format off

PlacesAPIDecoder &PlacesAPIDecoder::operator=(PlacesAPIDecoder &other)
{
    PlacesBaseDecoder::operator=(other);
    m_returnCode = other.m_returnCode;
    m_replyType = other.m_replyType;
    return *this;
}

// -------------------------------------------------------------------------------------------------------- replies

bool PlacesAPIDecoder::decodeResponse(ReturnCode &code)
{
    if (!decode(m_returnCode) || !decode(m_replyType))
        return false;
    code = m_returnCode;
    return true;
}

bool PlacesAPIDecoder::decodeReason(const char *&utf8, unsigned int &size)
{
    return m_returnCode != ReturnCode::Success
        && decode(size)
        && size <= REASON_SIZE
        && decodeCharArray(utf8, size);
}

bool PlacesAPIDecoder::decodeAddPlaceResponse(long long &id)
{
    return hasType(MessageType::AddPlace)
        && decode(id);
}

bool PlacesAPIDecoder::decodeUnfav(bool &stillStored)
{
    return hasType(MessageType::Unfav)
        && decode(stillStored);
}

bool PlacesAPIDecoder::decodeFindPlacesSize(unsigned int &size)
{
    return hasType(MessageType::FindPlacesSize)
        && decode(size);
}

bool PlacesAPIDecoder::decodeGetRecentSearchTerms(QStringList &terms)
{
    return hasType(MessageType::GetRecentSearchTerms)
        && decodeQStringList(terms);
}

bool PlacesAPIDecoder::decodeGetTagsResponse(QStringList &tags)
{
    return hasType(MessageType::GetTags)
        && decodeQStringList(tags);
}

bool PlacesAPIDecoder::decodeGetProviders(QList<Provider> &providers)
{
    return hasType(MessageType::GetProviders)
        && decodeList(providers, [this](Provider &provider) { return decodeProvider(provider); });
}

bool PlacesAPIDecoder::decodeGetAuxiliaryData(QList<AuxiliaryData> &data)
{
    return hasType(MessageType::GetAuxiliaryData)
        && decodePlaceAuxiliaryData(data);
}

bool PlacesAPIDecoder::decodeGetPlaceResponse(Place *&place)
{
    return decodePlace(place);
}

bool PlacesAPIDecoder::decodeGetPlaceFromContactResponse(Place *&place)
{
    return decodePlace(place);
}

bool PlacesAPIDecoder::decodeGetPlaceFromSuggestionResponse(Place *&place)
{
    return decodePlace(place);
}

bool PlacesAPIDecoder::decodeGetHeaderFromFullPlace(PlaceHeader *&header)
{
    return decodePlaceHeader(header);
}

bool PlacesAPIDecoder::decodeSearchHandle(SearchHandle *handle)
{
    bool moreData = false;
    int baseIndex = 0;
    int primaryIndex = -1;
    int secondaryIndex = -1;
    if (!decode(moreData) || !decode(baseIndex) || !decode(primaryIndex) || !decode(secondaryIndex))
        return false;

    // The mappings are optional: a service may omit them.
    std::vector<SearchHandlePrivate::IndexMapping> mappings;
    constexpr std::size_t MAPPING_SIZE = 2 * sizeof(int);
    if (remaining() >= sizeof(int)) {
        int count = 0;
        if (!decode(count) || count < 0 || static_cast<std::size_t>(count) > remaining() / MAPPING_SIZE)
            return false;
        mappings.resize(static_cast<std::size_t>(count));
        for (auto &[primary, secondary] : mappings) {
            if (!decode(primary) || !decode(secondary))
                return false;
        }
    }
    if (!handle)
        return true;

    SearchHandlePrivate &data = *SearchHandlePrivate::privateFromPublic(handle);
    // 64 bits: a base index near the largest int must not overflow.
    qint64 position = baseIndex;
    for (const auto &[primary, secondary] : mappings)
        data.addIndexMapping(static_cast<int>(std::min<qint64>(position++, std::numeric_limits<int>::max())), primary,
                             secondary);
    data.setMoreData(moreData);
    data.setProviderPrimaryIndex(primaryIndex);
    data.setProviderSecondaryIndex(secondaryIndex);
    return true;
}

// --------------------------------------------------------------------------------------------------------- places

bool PlacesAPIDecoder::decodePlacePrivate(PlacePrivate &record)
{
    if (!decodeCommonFields(record))
        return false;
    if (record.isHeader) {
        return decodeQString(record.primaryEmailAddress)
            && decodeHeaderLocation(record)
            && decodeQString(record.primaryPhoneNumber)
            && decodeQString(record.primaryUrl)
            && decodeQString(record.externalId)
            && decodeQString(record.auxiliaryDataType);
    }
    return decodePlaceLocations(record.locations)
        && decodeBehindLocations(record);
}

bool PlacesAPIDecoder::decodeCommonFields(PlacePrivate &record)
{
    return decodeBeforeSearchTerm(record)
        && decodeQString(record.searchTerm)
        && decode(record.securityPerimeter)
        && decode(record.certainty);
}

bool PlacesAPIDecoder::decodeBeforeSearchTerm(PlacePrivate &record)
{
    return decode(record.id)
        && decodeQString(record.name)
        && decodeQString(record.description)
        && decodeQString(record.owner)
        && decode(record.isPrivate)
        && decode(record.usageCount)
        && decodeQString(record.source)
        && decode(record.createdTime)
        && decode(record.updatedTime)
        && decode(record.expiredTime)
        && decode(record.lastUsedTime)
        && decode(record.isHeader)
        && decode(record.dataMask)
        && decode(record.persistenceMask);
}

bool PlacesAPIDecoder::decodeBehindLocations(PlacePrivate &record)
{
    return decodePlaceAuxiliaryData(record.auxiliaryData)
        && decodePlaceTags(record.tags)
        && decodePlaceAliases(record.aliases);
}

bool PlacesAPIDecoder::serviceDecodePlacePrivate(PlacePrivate &record)
{
    int count = 0;
    if (!decodeCommonFields(record) || record.isHeader || !decode(count) || count < 0)
        return false;
    // The count includes empty locations, which are not written, so the reader tries counts until the record ends with
    // the message.
    const Position locations = position();
    for (int unwritten = 0; unwritten <= std::min(count, MAX_UNWRITTEN_LOCATIONS); ++unwritten) {
        goTo(locations);
        const auto decodeOne = [this](Location &location) { return decodePlaceLocation(location); };
        if (decodeElements(record.locations, count - unwritten, decodeOne) && decodeBehindLocations(record)
            && testBuffer()) {
            std::generate_n(std::back_inserter(record.locations), unwritten, [] { return Location(); });
            return true;
        }
    }
    return false;
}

bool PlacesAPIDecoder::decodeHeaderLocation(PlacePrivate &record)
{
    record.header = std::make_unique<PlaceHeader>();
    return decodePlaceLocation(PlaceHeaderPrivate::privateFromPublic(record.header.get())->m_location);
}

/// Adds to the record of a header the fields of a full place: a location, unless it is empty, and an auxiliary record
/// of the header's type with its primary values.
void PlacesAPIDecoder::completeFromHeader(PlacePrivate &record)
{
    const Location &location = PlaceHeaderPrivate::privateFromPublic(record.header.get())->m_location;
    if (!LocationPrivate::privateFromPublic(&location)->isUnset()) {
        record.locations.append(location);
        record.locations.last().setZoom(location.zoom());
    }

    const bool isContact = record.auxiliaryDataType == AuxiliaryData::TypeContact;
    AuxiliaryData data(record.auxiliaryDataType.isEmpty() ? AuxiliaryData::TypePointOfInterest
                                                          : record.auxiliaryDataType);
    data.setExternalId(record.externalId);
    const std::pair<QString, QString> values[] = {
        {isContact ? QStringLiteral("email") : QStringLiteral("emailAddress"), record.primaryEmailAddress},
        {isContact ? QStringLiteral("mobilePhone") : QStringLiteral("phoneNumber"), record.primaryPhoneNumber},
        {QStringLiteral("url"), record.primaryUrl}};
    for (const auto &[key, value] : values) {
        if (!value.isEmpty())
            data.addProperty(key, value);
    }
    if (!record.auxiliaryDataType.isEmpty() || !data.externalId().isEmpty() || !data.properties().isEmpty())
        record.auxiliaryData.append(data);
}

void PlacesAPIDecoder::populatePlace(PlacePrivate &record, Place *place)
{
    if (record.isHeader)
        completeFromHeader(record);

    auto &data = *vela::platform::places::PlacePrivate::privateFromPublic(place);
    data.m_id = record.id;
    data.m_name.swap(record.name);
    data.m_description.swap(record.description);
    data.m_owner.swap(record.owner);
    data.m_source.swap(record.source);
    data.m_searchTerm.swap(record.searchTerm);
    data.m_lastUsedTime = record.lastUsedTime;
    data.m_isPrivate = record.isPrivate;
    data.m_securityPerimeter = toSystemPerimeter(record.securityPerimeter);
    data.m_certainty = record.certainty;
    data.m_usageCount = record.usageCount;
    data.m_locations.swap(record.locations);
    data.m_auxiliaryData.swap(record.auxiliaryData);
    data.m_tags.swap(record.tags);
    data.m_aliases.swap(record.aliases);
    data.m_createdTime = record.createdTime;
    data.m_updatedTime = record.updatedTime;
    data.m_expiredTime = record.expiredTime;
    data.m_persistenceMask = record.persistenceMask;
}

Place *PlacesAPIDecoder::createPlace(PlacePrivate &record)
{
    auto place = std::make_unique<Place>();
    populatePlace(record, place.get());
    return place.release();
}

PlaceHeader *PlacesAPIDecoder::createPlaceHeader(PlacePrivate &record)
{
    if (!record.isHeader) {
        Place place;
        populatePlace(record, &place);
        auto header = std::make_unique<PlaceHeader>();
        PlaceHeaderPrivate::privateFromPublic(header.get())
            ->setData(*vela::platform::places::PlacePrivate::privateFromPublic(&place));
        return header.release();
    }
    PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(record.header.get());
    data.setData(record.id, record.name, record.description, record.owner, record.source, record.lastUsedTime,
                 record.dataMask, record.primaryEmailAddress, record.primaryPhoneNumber, QUrl(record.primaryUrl),
                 record.externalId, record.auxiliaryDataType, data.m_location, record.searchTerm, record.isPrivate,
                 toSystemPerimeter(record.securityPerimeter), record.certainty);
    return record.header.release();
}

AbstractPlace *PlacesAPIDecoder::createAsRecorded(PlacePrivate &record)
{
    if (record.isHeader)
        return createPlaceHeader(record);
    return createPlace(record);
}

bool PlacesAPIDecoder::decodePlace(Place *&place)
{
    PlacePrivate record;
    if (!decodePlacePrivate(record))
        return false;
    place = createPlace(record);
    return true;
}

bool PlacesAPIDecoder::serviceDecodePlace(Place *&place)
{
    PlacePrivate record;
    if (!serviceDecodePlacePrivate(record))
        return false;
    place = createPlace(record);
    return true;
}

bool PlacesAPIDecoder::serviceSkipToSearchTerm()
{
    PlacePrivate record;
    return decodeBeforeSearchTerm(record);
}

bool PlacesAPIDecoder::decodePlaceHeader(PlaceHeader *&header)
{
    PlacePrivate record;
    if (!decodePlacePrivate(record))
        return false;
    header = createPlaceHeader(record);
    return true;
}

template <typename PlaceType>
bool PlacesAPIDecoder::decodePlaceList(QList<PlaceType *> &list, PlaceType *(*create)(PlacePrivate &))
{
    return decodeList(list, [this, create](PlaceType *&place) {
        PlacePrivate record;
        if (!decodePlacePrivate(record))
            return false;
        place = create(record);
        return true;
    });
}

bool PlacesAPIDecoder::decodePlaces(QList<Place *> &places)
{
    return decodePlaceList<Place>(places, createPlace);
}

bool PlacesAPIDecoder::decodePlaces(QList<PlaceHeader *> &headers)
{
    return decodePlaceList<PlaceHeader>(headers, createPlaceHeader);
}

bool PlacesAPIDecoder::decodePlaces(QList<AbstractPlace *> &places)
{
    return decodePlaceList<AbstractPlace>(places, createAsRecorded);
}

// -------------------------------------------------------------------------------------------------------- records

/// Reads a count and that many elements.
template <typename List, typename DecodeElement>
bool PlacesAPIDecoder::decodeList(List &list, DecodeElement decodeElement)
{
    list.clear();
    int count = 0;
    return decode(count) && count >= 0 && decodeElements(list, count, decodeElement);
}

/// The count never sizes an allocation: elements are appended one by one.
template <typename List, typename DecodeElement>
bool PlacesAPIDecoder::decodeElements(List &list, int count, DecodeElement decodeElement)
{
    list.clear();
    Unfinished<List> unfinished;
    for (int i = 0; i < count; ++i) {
        appendBlank(unfinished.list);
        if (!decodeElement(unfinished.list.last()))
            return false;
    }
    unfinished.handTo(list);
    return true;
}

bool PlacesAPIDecoder::decodePlaceLocations(QList<Location> &locations)
{
    return decodeList(locations, [this](Location &location) { return decodePlaceLocation(location); });
}

bool PlacesAPIDecoder::decodePlaceLocation(Location &location)
{
    LocationPrivate &data = *LocationPrivate::privateFromPublic(&location);
    return decode(data.m_id)
        && decode(data.m_zoom)
        && decodePlaceCoordinates(data.m_coordinates)
        && decodePlaceAddress(data.m_address)
        && decode(data.m_virtualDataType)
        && decodeQString(data.m_virtualData)
        && decodeQString(data.m_addressUsedToGeocode)
        && decodeBoundingBox(data.m_boundingBox);
}

bool PlacesAPIDecoder::decodePlaceAddress(Address &address)
{
    AddressPrivate &data = *AddressPrivate::privateFromPublic(&address);
    int floor = AddressPrivate::NO_FLOOR;
    const bool isWhole = decodeQString(data.part(AddressPrivate::Label))
        && decodeQString(data.part(AddressPrivate::Room))
        && decode(floor)
        && decodeQString(data.part(AddressPrivate::Building))
        && decodeQString(data.part(AddressPrivate::Campus))
        && decodeQString(data.part(AddressPrivate::HouseNumber))
        && decodeQString(data.part(AddressPrivate::Street))
        && decodeQString(data.part(AddressPrivate::City))
        && decodeQString(data.part(AddressPrivate::Region))
        && decodeQString(data.part(AddressPrivate::Country))
        && decodeQString(data.part(AddressPrivate::IsoAlpha2CountryCode))
        && decodeQString(data.part(AddressPrivate::IsoAlpha3CountryCode))
        && decodeQString(data.part(AddressPrivate::PostalCode))
        && decodeQStringList(data.compactAddressLines())
        && decodeQStringList(data.extendedAddressLines());
    if (isWhole)
        data.setFloor(floor);
    return isWhole;
}

bool PlacesAPIDecoder::decodePlaceCoordinates(Coordinates &coordinates)
{
    double altitude = 0;
    double latitude = 0;
    double longitude = 0;
    float horizontalAccuracy = 0;
    float verticalAccuracy = 0;
    if (!decodeCoordinate(altitude, latitude, longitude, horizontalAccuracy, verticalAccuracy))
        return false;
    coordinates.setAltitude(altitude);
    coordinates.setLatitude(latitude);
    coordinates.setLongitude(longitude);
    coordinates.setHorizontalAccuracy(horizontalAccuracy);
    coordinates.setVerticalAccuracy(verticalAccuracy);
    return true;
}

bool PlacesAPIDecoder::decodeBoundingBox(BoundingBox &box)
{
    BoundingBoxPrivate &data = *BoundingBoxPrivate::privateFromPublic(&box);
    return decodePlaceCoordinates(data.topLeft)
        && decodePlaceCoordinates(data.bottomRight);
}

bool PlacesAPIDecoder::decodePlaceAuxiliaryData(QList<AuxiliaryData> &list)
{
    return decodeList(list, [this](AuxiliaryData &data) { return decodePlaceAuxiliaryDatum(data); });
}

bool PlacesAPIDecoder::decodePlaceAuxiliaryDatum(AuxiliaryData &data)
{
    AuxiliaryDataPrivate &record = *AuxiliaryDataPrivate::fromPublic(data);
    return decode(record.id)
        && decodeQString(record.externalId)
        && decodeQString(record.type)
        && decode(record.persistable)
        && decodeProvider(record.provider)
        && decodeProperties(record.properties);
}

bool PlacesAPIDecoder::decodeProvider(Provider &provider)
{
    // Copies of a provider share their data, so start with new data.
    provider = Provider();
    ProviderData &data = *ProviderData::fromPublic(provider);
    return decodeQString(data.name)
        && decodeUrl(data.url)
        && decode(data.canRequestAdditionalData)
        && decodeQStringList(data.supportedDataTypes);
}

bool PlacesAPIDecoder::decodeUrl(QUrl &url)
{
    QString text;
    if (!decodeQString(text))
        return false;
    url = text.isEmpty() ? QUrl() : QUrl(text);
    return true;
}

bool PlacesAPIDecoder::decodeProperties(QMap<QString, QString> &properties)
{
    properties.clear();
    int count = 0;
    if (!decode(count) || count < 0)
        return false;
    QString key;
    QString value;
    for (int i = 0; i < count; ++i) {
        if (!decodeQStringPair(key, value))
            return false;
        properties.insert(key, value);
    }
    return true;
}

bool PlacesAPIDecoder::decodePlaceTags(QStringList &tags)
{
    return decodeQStringList(tags);
}

bool PlacesAPIDecoder::decodePlaceAliases(QStringList &aliases)
{
    return decodeQStringList(aliases);
}

bool PlacesAPIDecoder::decodeQStringList(QStringList &list)
{
    return decodeList(list, [this](QString &text) { return decodeQString(text); });
}

bool PlacesAPIDecoder::decodeQStringPair(QString &first, QString &second)
{
    return decodeQString(first)
        && decodeQString(second);
}

// clang-format on

} // namespace orix_places_protocol
