// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AuxiliaryData.h"
#include "places/Location.h"
#include "places/PlaceHeader.h"
#include "places/SearchResultCertainty.h"
#include "protocol/PlacesBaseDecoder.h"
#include "protocol/ProtocolTypes.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

#include <memory>
#include <type_traits>

namespace vela::platform::places
{
class AbstractPlace;
class Place;
class SearchHandle;
} // namespace vela::platform::places

namespace orix_places_protocol
{

namespace places = vela::platform::places;

/// Reads replies and their records. Each function returns false at the first field that cannot be read. Then lists are
/// empty, created objects are freed, a record may be filled partially, and other targets are unchanged. A list is
/// replaced, not appended to. The caller owns returned objects.
class PlacesAPIDecoder : public PlacesBaseDecoder
{
public:
    using PlacesBaseDecoder::PlacesBaseDecoder;
    PlacesAPIDecoder() = default;
    /// Moves the reply and its status from `other`.
    PlacesAPIDecoder &operator=(PlacesAPIDecoder &other);

    [[nodiscard]] int replyType() const { return m_replyType; }

    // Replies. Functions with a type refuse replies of another type.
    bool decodeResponse(ReturnCode &code);
    /// The reason after the status of a failed reply, as UTF-8 bytes within the message. False when it is missing,
    /// unreadable or longer than REASON_SIZE.
    bool decodeReason(const char *&utf8, unsigned int &size);
    bool decodeAddPlaceResponse(long long &id);
    bool decodeUnfav(bool &stillStored);
    bool decodeFindPlacesSize(unsigned int &size);
    bool decodeGetRecentSearchTerms(QStringList &terms);
    bool decodeGetTagsResponse(QStringList &tags);
    bool decodeGetProviders(QList<places::Provider> &providers);
    bool decodeGetAuxiliaryData(QList<places::AuxiliaryData> &data);
    bool decodeGetPlaceResponse(places::Place *&place);
    bool decodeGetPlaceFromContactResponse(places::Place *&place);
    bool decodeGetPlaceFromSuggestionResponse(places::Place *&place);
    bool decodeGetHeaderFromFullPlace(places::PlaceHeader *&header);
    /// The places of a find and its paging state; a null handle ignores the state.
    template <typename PlaceType>
    bool decodeFindPlaces(QList<PlaceType *> &places, places::SearchHandle *handle)
    {
        places.clear();
        Unfinished<QList<PlaceType *>> found;
        if (!hasType(MessageType::FindPlaces) || !decodePlaces(found.list) || !decodeSearchHandle(handle))
            return false;
        found.handTo(places);
        return true;
    }
    bool decodeSearchHandle(places::SearchHandle *handle);

    // Records.
    bool decodePlace(places::Place *&place);
    bool decodePlaceHeader(places::PlaceHeader *&header);
    bool decodePlaces(QList<places::Place *> &places);
    bool decodePlaces(QList<places::PlaceHeader *> &headers);
    /// Each record becomes a header or a full place, by its own kind.
    bool decodePlaces(QList<places::AbstractPlace *> &places);
    bool decodePlaceLocations(QList<places::Location> &locations);
    bool decodePlaceLocation(places::Location &location);
    bool decodePlaceAddress(places::Address &address);
    bool decodePlaceCoordinates(places::Coordinates &coordinates);
    bool decodeBoundingBox(places::BoundingBox &box);
    bool decodePlaceAuxiliaryData(QList<places::AuxiliaryData> &list);
    bool decodePlaceAuxiliaryDatum(places::AuxiliaryData &data);
    bool decodeProvider(places::Provider &provider);
    bool decodeProperties(QMap<QString, QString> &properties);
    bool decodePlaceTags(QStringList &tags);
    bool decodePlaceAliases(QStringList &aliases);
    bool decodeQStringList(QStringList &list);
    bool decodeQStringPair(QString &first, QString &second);

    // For a service: a full place as written by encodePlace(), up to the end of the message. Empty locations, which are
    // counted but not written, come last; a record with more than a few of them is refused.
    bool serviceDecodePlace(places::Place *&place);
    /// For a service: reads a record, full or header, up to its search term.
    bool serviceSkipToSearchTerm();

private:
    /// A place record on the wire, before its kind is known.
    struct PlacePrivate
    {
        qint64 id = -1;
        QString name;
        QString description;
        QString owner;
        bool isPrivate = false;
        int usageCount = 0;
        QString source;
        quint64 createdTime = 0;
        quint64 updatedTime = 0;
        quint64 expiredTime = 0;
        quint64 lastUsedTime = 0;
        bool isHeader = false;
        qint64 dataMask = 0;
        int persistenceMask = 0;
        QString searchTerm;
        Perimeter securityPerimeter = Perimeter::Default;
        places::SearchResultCertainty::Type certainty = places::SearchResultCertainty::Unknown;
        // A full place.
        QList<places::Location> locations;
        QList<places::AuxiliaryData> auxiliaryData;
        QStringList tags;
        QStringList aliases;
        // A header and its object; the location is decoded in place.
        std::unique_ptr<places::PlaceHeader> header;
        QString primaryEmailAddress;
        QString primaryPhoneNumber;
        QString primaryUrl;
        QString externalId;
        QString auxiliaryDataType;
    };

    /// A list during decoding. It owns its places until release().
    template <typename List>
    struct Unfinished
    {
        Unfinished() = default;
        Unfinished(const Unfinished &) = delete;
        Unfinished &operator=(const Unfinished &) = delete;
        ~Unfinished()
        {
            if constexpr (std::is_pointer_v<typename List::value_type>)
                qDeleteAll(list);
        }
        void handTo(List &target)
        {
            target = list;
            list.clear();
        }

        List list;
    };

    bool decodePlacePrivate(PlacePrivate &record);
    bool serviceDecodePlacePrivate(PlacePrivate &record);
    bool decodeCommonFields(PlacePrivate &record);
    bool decodeBeforeSearchTerm(PlacePrivate &record);
    bool decodeBehindLocations(PlacePrivate &record);
    bool decodeHeaderLocation(PlacePrivate &record);
    bool decodeUrl(QUrl &url);
    bool hasType(MessageType request) const { return m_replyType == replyTypeOf(request); }

    static void completeFromHeader(PlacePrivate &record);
    static void populatePlace(PlacePrivate &record, places::Place *place);
    static places::Place *createPlace(PlacePrivate &record);
    static places::PlaceHeader *createPlaceHeader(PlacePrivate &record);
    static places::AbstractPlace *createAsRecorded(PlacePrivate &record);

    template <typename List, typename DecodeElement>
    bool decodeList(List &list, DecodeElement decodeElement);
    template <typename List, typename DecodeElement>
    bool decodeElements(List &list, int count, DecodeElement decodeElement);
    template <typename PlaceType>
    bool decodePlaceList(QList<PlaceType *> &list, PlaceType *(*create)(PlacePrivate &));

    ReturnCode m_returnCode = ReturnCode::NoStatus;
    int m_replyType = REPLY_OFFSET;
};

} // namespace orix_places_protocol
