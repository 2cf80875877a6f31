// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "places/SearchHandle.h"
#include "protocol/PlacesAPIDecoder.h"

#include <cstddef>
#include <cstdint>
#include <memory>

using namespace vela::platform::places;
using orix_places_protocol::MessageType;
using orix_places_protocol::PlacesAPIDecoder;
using orix_places_protocol::replyTypeOf;
using orix_places_protocol::ReturnCode;

namespace
{

template <typename PlaceType>
void readOne(PlacesAPIDecoder &reply, bool (PlacesAPIDecoder::*read)(PlaceType *&))
{
    PlaceType *place = nullptr;
    const bool wasRead = (reply.*read)(place);
    const std::unique_ptr<PlaceType> owned(place);
    if (wasRead != (place != nullptr))
        __builtin_trap();
}

template <typename PlaceType>
void readFound(PlacesAPIDecoder &reply)
{
    SearchHandle handle;
    QList<PlaceType *> found;
    if (!reply.decodeFindPlaces(found, &handle) && !found.isEmpty())
        __builtin_trap();
    qDeleteAll(found);
}

/// Reads the body of a reply by its type, like the operations.
void readBody(PlacesAPIDecoder &reply, bool fullPlaces)
{
    long long id = 0;
    bool answer = false;
    unsigned int size = 0;
    QStringList texts;
    QList<Provider> providers;
    QList<AuxiliaryData> records;
    switch (reply.replyType()) {
    case replyTypeOf(MessageType::AddPlace):
        reply.decodeAddPlaceResponse(id);
        break;
    case replyTypeOf(MessageType::Unfav):
        reply.decodeUnfav(answer);
        break;
    case replyTypeOf(MessageType::FindPlacesSize):
        reply.decodeFindPlacesSize(size);
        break;
    case replyTypeOf(MessageType::GetRecentSearchTerms):
        reply.decodeGetRecentSearchTerms(texts);
        break;
    case replyTypeOf(MessageType::GetTags):
        reply.decodeGetTagsResponse(texts);
        break;
    case replyTypeOf(MessageType::GetProviders):
        reply.decodeGetProviders(providers);
        break;
    case replyTypeOf(MessageType::GetAuxiliaryData):
        reply.decodeGetAuxiliaryData(records);
        break;
    case replyTypeOf(MessageType::FindPlaces):
        fullPlaces ? readFound<Place>(reply) : readFound<AbstractPlace>(reply);
        break;
    case replyTypeOf(MessageType::GetHeaderFromFullPlace):
        readOne(reply, &PlacesAPIDecoder::decodeGetHeaderFromFullPlace);
        break;
    default:
        readOne(reply, &PlacesAPIDecoder::decodeGetPlaceResponse);
        break;
    }
}

/// Reads the reason after the status of a failed reply.
void readReason(PlacesAPIDecoder &reply)
{
    const char *utf8 = nullptr;
    unsigned int size = 0;
    if (reply.decodeReason(utf8, size) && (size > orix_places_protocol::REASON_SIZE || !utf8))
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    for (const bool fullPlaces : {false, true}) {
        PlacesAPIDecoder reply(reinterpret_cast<const char *>(bytes), static_cast<unsigned int>(size));
        ReturnCode code = ReturnCode::NoStatus;
        if (reply.decodeResponse(code))
            code == ReturnCode::Success ? readBody(reply, fullPlaces) : readReason(reply);
    }
    return 0;
}
