// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/PlacesBaseEncoder.h"
#include "protocol/ProtocolTypes.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class AbstractPlace;
class Address;
class AuxiliaryData;
class AuxiliaryDataRequest;
class BoundingBox;
class ConnectiveRule;
class Coordinates;
class Location;
class Place;
class PlaceHeader;
class PlaceId;
class PlacePrivate;
class Provider;
class SearchRule;
class SearchRulePrivate;
class SortRule;
class SortRulePrivate;
} // namespace vela::platform::places

namespace orix_places_protocol
{

namespace places = vela::platform::places;

/// Writes whole requests, header and body, and their records. Each function returns false at the first field that
/// cannot be written; the message is then invalid.
class PlacesAPIEncoder : public PlacesBaseEncoder
{
public:
    // Header of every request: type, perimeter, session key.
    bool encodeHeader(MessageType type);
    bool encodeHeader(MessageType type, vela::system::SecurityPerimeter::Type perimeter);

    // Requests.
    bool encodeAddPlace(const places::Place &place);
    bool encodeGetRecentSearchTerms(const std::string &prefix);
    bool encodeGetAuxiliaryData(const places::AuxiliaryDataRequest &request);
    bool encodeRemovePlace(const places::AbstractPlace &place);
    bool encodeRemovePlace(long long id);
    bool encodeUpdatePlace(const places::Place &place);
    bool encodeIncUsage(long long id, const std::string &searchTerm);
    bool encodeAddTag(long long id, const std::string &tag);
    bool encodeRemoveTag(long long id, const std::string &tag);
    bool encodeGetTags();
    bool encodeGetPlaceFromContact(int account, int contact, int address);
    bool encodeRemoveRecentlyPickedPlaces();
    bool encodeGetPlace(long long id);
    /// Removes the search term from the header: it is sent once.
    bool encodeGetPlace(const places::PlaceHeader &header);
    bool encodeFindPlaces(const places::SearchRule &rule, const places::SortRule &sort, int offset, int count,
                          bool headerOnly, const places::Coordinates &mapCenter, int providerPrimaryIndex,
                          int providerSecondaryIndex);
    bool encodeUnfav(long long id);
    bool encodeBackup(const std::string &path);
    bool encodeRestore(const std::string &path);
    bool encodeFindPlacesSize(const places::SearchRule &rule, const places::Coordinates &mapCenter);
    bool encodeGetPlaceFromSuggestion(const std::string &suggestion, const places::Coordinates &centre);
    bool encodeGetProviders();
    bool encodeGetHeaderFromFullPlace(const places::Place &place);

    // Records.
    /// A full place.
    bool encodePlace(const places::Place &place);
    /// The header form of a place, for replies of a service.
    bool encodePlaceHeader(const places::Place &place);
    /// The same, with an existing header of the place.
    bool encodePlaceHeader(const places::Place &place, const places::PlaceHeader &header);
    bool encodePlaceLocations(const places::Place &place);
    bool encodeLocation(const places::Location &location);
    bool encodeAddress(const places::Address &address);
    bool encodeCoordinate(const places::Coordinates &coordinates);
    bool encodeBoundingBox(const places::BoundingBox &box);
    bool encodePlaceAuxiliaryData(const places::Place &place);
    bool encodeAuxiliaryDataList(const QList<places::AuxiliaryData> &list);
    bool encodeAuxiliaryDatum(const places::AuxiliaryData &data);
    bool encodeProvider(const places::Provider &provider);
    bool encodePlaceProperties(const QMap<QString, QString> &properties);
    bool encodePlaceId(const places::PlaceId &id);
    bool encodeTag(long long id, const std::string &tag);
    bool encodeQStringList(const QStringList &list);
    bool encodeQStringPair(const QString &first, const QString &second);

    // Rules.
    bool encodeSearchRule(const places::SearchRule &rule);
    bool encodeSearchRule(const places::SearchRulePrivate *rule);
    bool encodeSortRule(const places::SortRule &rule);
    bool encodeSortRule(const places::SortRulePrivate *rule);

private:
    bool encodePlaceFields(const places::PlacePrivate &place, bool headerOnly, qint64 dataMask);
    bool encodeQuery(const places::SearchRule &rule, const places::SortRule &sort, int offset, int count,
                     bool headerOnly, const places::Coordinates &mapCenter, int providerPrimaryIndex,
                     int providerSecondaryIndex);
    bool encodeSingleSearchRule(SearchRuleKind kind, int field, int op, const std::string &s1, const std::string &s2,
                                int value);
    bool encodeConnectiveRule(SearchRuleKind kind, const places::ConnectiveRule &rule);
    bool encodeSingleSortRule(SortRuleKind kind, int order, int field);
};

} // namespace orix_places_protocol
