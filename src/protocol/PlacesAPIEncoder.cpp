// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIEncoder.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/AddressPrivate.h"
#include "model/BoundingBoxPrivate.h"
#include "model/LocationPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "model/ProviderData.h"
#include "places/AuxiliaryDataRequest.h"
#include "places/Utilities.h"
#include "protocol/PIMSession.h"
#include "search/SearchRulePrivate.h"
#include "search/SortRulePrivate.h"

#include <algorithm>
#include <vector>

namespace orix_places_protocol
{

using namespace vela::platform::places;
using vela::system::SecurityPerimeter;

// One field per line, in wire order.
// clang-format off

// ------------------------------------------------------------------------------------------------------- requests

bool PlacesAPIEncoder::encodeHeader(MessageType type)
{
    return encodeHeader(type, SecurityPerimeter::Default);
}

bool PlacesAPIEncoder::encodeHeader(MessageType type, SecurityPerimeter::Type perimeter)
{
    return encode(type)
        && encode(fromSystemPerimeter(perimeter))
        && encodeString(PIMSession::getSessionKey());
}

bool PlacesAPIEncoder::encodeAddPlace(const Place &place)
{
    return encodeHeader(MessageType::AddPlace, place.securityPerimeter())
        && encodePlace(place);
}

bool PlacesAPIEncoder::encodeGetRecentSearchTerms(const std::string &prefix)
{
    return encodeHeader(MessageType::GetRecentSearchTerms)
        && encodeString(prefix);
}

bool PlacesAPIEncoder::encodeGetAuxiliaryData(const AuxiliaryDataRequest &request)
{
    const QSharedPointer<AbstractPlace> place = request.place();
    return place && encodeHeader(MessageType::GetAuxiliaryData, place->securityPerimeter())
        && encodePlaceId(*AbstractPlacePrivate::privateFromPublic(place.data())->globalId())
        && encodeQString(request.dataType())
        && encode(request.isRemoteDataOnly())
        && encodeProvider(request.provider())
        && encode(request.offset())
        && encode(request.limit());
}

bool PlacesAPIEncoder::encodeRemovePlace(const AbstractPlace &place)
{
    return encodeHeader(MessageType::RemovePlace, place.securityPerimeter())
        && encode(place.id());
}

bool PlacesAPIEncoder::encodeRemovePlace(long long id)
{
    return encodeHeader(MessageType::RemovePlace)
        && encode(id);
}

bool PlacesAPIEncoder::encodeUpdatePlace(const Place &place)
{
    return encodeHeader(MessageType::UpdatePlace, place.securityPerimeter())
        && encodePlace(place);
}

bool PlacesAPIEncoder::encodeIncUsage(long long id, const std::string &searchTerm)
{
    return encodeHeader(MessageType::IncrementUsage)
        && encode(id)
        && encodeString(searchTerm);
}

bool PlacesAPIEncoder::encodeAddTag(long long id, const std::string &tag)
{
    return encodeHeader(MessageType::AddTag)
        && encodeTag(id, tag);
}

bool PlacesAPIEncoder::encodeRemoveTag(long long id, const std::string &tag)
{
    return encodeHeader(MessageType::RemoveTag)
        && encodeTag(id, tag);
}

bool PlacesAPIEncoder::encodeGetTags()
{
    return encodeHeader(MessageType::GetTags);
}

bool PlacesAPIEncoder::encodeGetPlaceFromContact(int account, int contact, int address)
{
    return encodeHeader(MessageType::GetPlaceFromContact)
        && encode(account)
        && encode(contact)
        && encode(address);
}

bool PlacesAPIEncoder::encodeRemoveRecentlyPickedPlaces()
{
    return encodeHeader(MessageType::RemoveRecentlyPickedPlaces);
}

bool PlacesAPIEncoder::encodeGetPlace(long long id)
{
    return encodeHeader(MessageType::GetPlace)
        && encode(id)
        && encodeString({})  // external id
        && encodeString({})  // type of auxiliary data
        && encodeString({}); // search term
}

bool PlacesAPIEncoder::encodeGetPlace(const PlaceHeader &header)
{
    const PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(&header);
    const QString searchTerm = AbstractPlacePrivate::mutablePrivate(header)->takeSearchTerm();
    return encodeHeader(MessageType::GetPlace, header.securityPerimeter())
        && encode(data.id())
        && encodeQString(data.externalId())
        && encodeQString(data.auxiliaryDataType())
        && encodeString(searchTerm.toLatin1().toStdString());
}

bool PlacesAPIEncoder::encodeFindPlaces(const SearchRule &rule, const SortRule &sort, int offset, int count,
                                        bool headerOnly, const Coordinates &mapCenter, int providerPrimaryIndex,
                                        int providerSecondaryIndex)
{
    return encodeHeader(MessageType::FindPlaces)
        && encodeQuery(rule, sort, offset, count, headerOnly, mapCenter, providerPrimaryIndex, providerSecondaryIndex);
}

bool PlacesAPIEncoder::encodeUnfav(long long id)
{
    return encodeHeader(MessageType::Unfav)
        && encode(id);
}

bool PlacesAPIEncoder::encodeBackup(const std::string &path)
{
    return encodeHeader(MessageType::Backup)
        && encodeString(path);
}

bool PlacesAPIEncoder::encodeRestore(const std::string &path)
{
    return encodeHeader(MessageType::Restore)
        && encodeString(path);
}

bool PlacesAPIEncoder::encodeFindPlacesSize(const SearchRule &rule, const Coordinates &mapCenter)
{
    return encodeHeader(MessageType::FindPlacesSize)
        && encodeQuery(rule, SortRule(), 0, 0, false, mapCenter, -1, -1);
}

bool PlacesAPIEncoder::encodeGetPlaceFromSuggestion(const std::string &suggestion, const Coordinates &centre)
{
    return encodeHeader(MessageType::GetPlaceFromSuggestion)
        && encodeString(suggestion)
        && encodeCoordinate(centre);
}

bool PlacesAPIEncoder::encodeGetProviders()
{
    return encodeHeader(MessageType::GetProviders);
}

bool PlacesAPIEncoder::encodeGetHeaderFromFullPlace(const Place &place)
{
    return encodeHeader(MessageType::GetHeaderFromFullPlace, place.securityPerimeter())
        && encodePlace(place);
}

// -------------------------------------------------------------------------------------------------------- records

bool PlacesAPIEncoder::encodePlace(const Place &place)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    return encodePlaceFields(data, false, 0)
        && encodePlaceLocations(place)
        && encodePlaceAuxiliaryData(place)
        && encodeQStringList(data.tags())
        && encodeQStringList(data.aliases());
}

bool PlacesAPIEncoder::encodePlaceHeader(const Place &place)
{
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setData(*PlacePrivate::privateFromPublic(&place));
    return encodePlaceHeader(place, header);
}

bool PlacesAPIEncoder::encodePlaceHeader(const Place &place, const PlaceHeader &header)
{
    const PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(&header);
    return encodePlaceFields(*PlacePrivate::privateFromPublic(&place), true, data.dataMask())
        && encodeQString(data.primaryEmailAddress())
        && encodeLocation(data.m_location)
        && encodeQString(data.primaryPhoneNumber())
        && encodeQString(data.primaryUrl().toString())
        && encodeQString(data.externalId())
        && encodeQString(data.auxiliaryDataType());
}

bool PlacesAPIEncoder::encodePlaceFields(const PlacePrivate &place, bool headerOnly, qint64 dataMask)
{
    return encode(place.id())
        && encodeQString(place.name())
        && encodeQString(place.description())
        && encodeQString(place.owner())
        && encode(place.isPrivate())
        && encode(place.usageCount())
        && encodeQString(place.source())
        && encode(place.createdTime())
        && encode(place.updatedTime())
        && encode(place.expiredTime())
        && encode(place.lastUsedTime())
        && encode(headerOnly)
        && encode(dataMask)
        && encode(place.persistenceMask())
        && encodeQString(place.searchTerm())
        && encode(fromSystemPerimeter(place.securityPerimeter()))
        && encode(place.certainty());
}

bool PlacesAPIEncoder::encodePlaceLocations(const Place &place)
{
    const QList<Location> &locations = PlacePrivate::privateFromPublic(&place)->locations();
    // The count includes empty locations, which are not written; the service expects that.
    return encodeCount(locations.size())
        && std::all_of(locations.begin(), locations.end(), [this](const Location &location) {
               return LocationPrivate::privateFromPublic(&location)->isUnset() || encodeLocation(location);
           });
}

bool PlacesAPIEncoder::encodeLocation(const Location &location)
{
    const LocationPrivate &data = *LocationPrivate::privateFromPublic(&location);
    return encode(data.m_id)
        && encode(data.m_zoom)
        && encodeCoordinate(data.m_coordinates)
        && encodeAddress(data.m_address)
        && encode(data.m_virtualDataType)
        && encodeQString(data.m_virtualData)
        && encodeQString(data.m_addressUsedToGeocode)
        && encodeBoundingBox(data.m_boundingBox);
}

bool PlacesAPIEncoder::encodeAddress(const Address &address)
{
    const AddressPrivate &data = *AddressPrivate::privateFromPublic(&address);
    return encodeQString(data.part(AddressPrivate::Label))
        && encodeQString(data.part(AddressPrivate::Room))
        && encode(data.floor())
        && encodeQString(data.part(AddressPrivate::Building))
        && encodeQString(data.part(AddressPrivate::Campus))
        && encodeQString(data.part(AddressPrivate::HouseNumber))
        && encodeQString(data.part(AddressPrivate::Street))
        && encodeQString(data.part(AddressPrivate::City))
        && encodeQString(data.part(AddressPrivate::Region))
        && encodeQString(data.part(AddressPrivate::Country))
        && encodeQString(data.part(AddressPrivate::IsoAlpha2CountryCode))
        && encodeQString(data.part(AddressPrivate::IsoAlpha3CountryCode))
        && encodeQString(data.part(AddressPrivate::PostalCode))
        && encodeQStringList(data.compactAddressLines())
        && encodeQStringList(data.extendedAddressLines());
}

bool PlacesAPIEncoder::encodeCoordinate(const Coordinates &coordinates)
{
    return encode(coordinates.altitude())
        && encode(coordinates.latitude())
        && encode(coordinates.longitude())
        && encode(coordinates.horizontalAccuracy())
        && encode(coordinates.verticalAccuracy());
}

bool PlacesAPIEncoder::encodeBoundingBox(const BoundingBox &box)
{
    const BoundingBoxPrivate &data = *BoundingBoxPrivate::privateFromPublic(&box);
    return encodeCoordinate(data.topLeft)
        && encodeCoordinate(data.bottomRight);
}

bool PlacesAPIEncoder::encodePlaceAuxiliaryData(const Place &place)
{
    return encodeAuxiliaryDataList(PlacePrivate::privateFromPublic(&place)->auxiliaryData());
}

bool PlacesAPIEncoder::encodeAuxiliaryDataList(const QList<AuxiliaryData> &list)
{
    return encodeCount(list.size())
        && std::all_of(list.begin(), list.end(), [this](const auto &data) { return encodeAuxiliaryDatum(data); });
}

bool PlacesAPIEncoder::encodeAuxiliaryDatum(const AuxiliaryData &data)
{
    const AuxiliaryDataPrivate &record = *AuxiliaryDataPrivate::fromPublic(data);
    return encode(record.id)
        && encodeQString(record.externalId)
        && encodeQString(record.type)
        && encode(record.persistable)
        && encodeProvider(record.provider)
        && encodePlaceProperties(record.properties);
}

bool PlacesAPIEncoder::encodeProvider(const Provider &provider)
{
    const ProviderData &data = *ProviderData::fromPublic(provider);
    return encodeQString(data.name)
        && encodeQString(data.url.toString())
        && encode(data.canRequestAdditionalData)
        && encodeQStringList(data.supportedDataTypes);
}

bool PlacesAPIEncoder::encodePlaceProperties(const QMap<QString, QString> &properties)
{
    if (!encodeCount(properties.size()))
        return false;
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        if (!encodeQStringPair(property.key(), property.value()))
            return false;
    }
    return true;
}

bool PlacesAPIEncoder::encodePlaceId(const PlaceId &id)
{
    // Sorted, so that equal places give equal bytes.
    using Entry = std::pair<Provider, QString>;
    std::vector<Entry> externalIds;
    for (auto entry = id.externalIds.begin(); entry != id.externalIds.end(); ++entry)
        externalIds.emplace_back(entry.key(), entry.value());
    std::sort(externalIds.begin(), externalIds.end(), [](const Entry &a, const Entry &b) {
        return std::make_pair(a.first.name(), a.first.url()) < std::make_pair(b.first.name(), b.first.url());
    });

    return encode(id.persistedId)
        && encodeQString(id.name)
        && encodeQString(id.location)
        && encodeQString(id.phoneNumber)
        && encodeCoordinate(id.coordinates)
        && encodeQStringList(id.auxiliaryDataTypes)
        && encode(id.complete)
        && encode(id.restaurant)
        && encodeCount(externalIds.size())
        && std::all_of(externalIds.begin(), externalIds.end(), [this](const Entry &entry) {
               return encodeProvider(entry.first) && encodeQString(entry.second);
           });
}

bool PlacesAPIEncoder::encodeTag(long long id, const std::string &tag)
{
    return encode(id)
        && encodeString(tag);
}

bool PlacesAPIEncoder::encodeQStringList(const QStringList &list)
{
    return encodeCount(list.size())
        && std::all_of(list.begin(), list.end(), [this](const QString &text) { return encodeQString(text); });
}

bool PlacesAPIEncoder::encodeQStringPair(const QString &first, const QString &second)
{
    return encodeQString(first)
        && encodeQString(second);
}

// ---------------------------------------------------------------------------------------------------------- rules

bool PlacesAPIEncoder::encodeQuery(const SearchRule &rule, const SortRule &sort, int offset, int count, bool headerOnly,
                                   const Coordinates &mapCenter, int providerPrimaryIndex, int providerSecondaryIndex)
{
    return encode(count)
        && encode(offset)
        && encodeCoordinate(mapCenter)
        && encode(headerOnly)
        && encodeSearchRule(rule)
        && encodeSortRule(sort)
        && encode(providerPrimaryIndex)
        && encode(providerSecondaryIndex);
}

bool PlacesAPIEncoder::encodeSearchRule(const SearchRule &rule)
{
    return encodeSearchRule(SearchRulePrivate::privateFromPublic(rule));
}

bool PlacesAPIEncoder::encodeSearchRule(const SearchRulePrivate *rule)
{
    if (const auto *unary = dynamic_cast<const UnaryRule<std::string> *>(rule)) {
        return encodeSingleSearchRule(SearchRuleKind::UnaryString, unary->getField(), unary->getOperator(),
                                      unary->getValue(), {}, 0)
            && encode(0);
    }
    if (const auto *unary = dynamic_cast<const UnaryRule<int> *>(rule)) {
        return encodeSingleSearchRule(SearchRuleKind::UnaryInt, unary->getField(), unary->getOperator(), {}, {},
                                      unary->getValue())
            && encode(0);
    }
    if (const auto *nullary = dynamic_cast<const NullaryRule *>(rule)) {
        return encodeSingleSearchRule(SearchRuleKind::Nullary, nullary->getField(), nullary->getOperator(), {}, {}, 0)
            && encode(0);
    }
    if (const auto *connective = dynamic_cast<const AndRule *>(rule))
        return encodeConnectiveRule(SearchRuleKind::And, *connective);
    if (const auto *connective = dynamic_cast<const OrRule *>(rule))
        return encodeConnectiveRule(SearchRuleKind::Or, *connective);
    if (const auto *connective = dynamic_cast<const DisjointRule *>(rule))
        return encodeConnectiveRule(SearchRuleKind::Disjoint, *connective);
    return encodeSingleSearchRule(SearchRuleKind::Abstract, 0, SearchOperator::None, {}, {}, 0)
        && encode(0);
}

bool PlacesAPIEncoder::encodeSingleSearchRule(SearchRuleKind kind, int field, int op, const std::string &s1,
                                              const std::string &s2, int value)
{
    return encode(kind)
        && encode(field)
        && encode(op)
        && encodeStringPair(s1, s2)
        && encode(value);
}

bool PlacesAPIEncoder::encodeConnectiveRule(SearchRuleKind kind, const ConnectiveRule &rule)
{
    const auto members = rule.getRules();
    return encodeSingleSearchRule(kind, 0, rule.getOperator(), {}, {}, 0)
        && encodeCount(members.size())
        && std::all_of(members.begin(), members.end(), [this](const auto *member) { return encodeSearchRule(member); });
}

bool PlacesAPIEncoder::encodeSortRule(const SortRule &rule)
{
    return encodeSortRule(SortRulePrivate::privateFromPublic(rule));
}

bool PlacesAPIEncoder::encodeSortRule(const SortRulePrivate *rule)
{
    if (const auto *simple = dynamic_cast<const SimpleSortRule *>(rule)) {
        return encodeSingleSortRule(SortRuleKind::Simple, simple->getOrder(), simple->getType())
            && encode(0);
    }
    if (const auto *distance = dynamic_cast<const DistanceSortRule *>(rule)) {
        return encodeSingleSortRule(SortRuleKind::Distance, distance->getOrder(), 0)
            && encodeCoordinate(distance->getCoordinates());
    }
    if (const auto *combined = dynamic_cast<const CombinedSortRule *>(rule)) {
        const auto members = combined->getRules();
        return encodeSingleSortRule(SortRuleKind::Combined, SortOrder::Ascending, 0)
            && encodeCount(members.size())
            && std::all_of(members.begin(), members.end(),
                           [this](const auto *member) { return encodeSortRule(member); });
    }
    return encodeSingleSortRule(SortRuleKind::Abstract, SortOrder::Ascending, 0)
        && encode(0);
}

bool PlacesAPIEncoder::encodeSingleSortRule(SortRuleKind kind, int order, int field)
{
    return encode(kind)
        && encode(order)
        && encode(field);
}

// clang-format on

} // namespace orix_places_protocol
