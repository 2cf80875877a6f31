// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vela/system/SecurityPerimeter.h>

/// The numbers of the wire protocol.
namespace orix_places_protocol
{

/// What a request asks for. Its reply carries the same number plus REPLY_OFFSET.
enum class MessageType : int
{
    AddPlace = 1,
    GetRecentSearchTerms = 2,
    GetAuxiliaryData = 3,
    RemovePlace = 4,
    UpdatePlace = 5,
    IncrementUsage = 6,
    AddTag = 7,
    RemoveTag = 8,
    GetTags = 9,
    GetPlaceFromContact = 10,
    RemoveRecentlyPickedPlaces = 11,
    GetPlace = 12,
    FindPlaces = 13,
    Unfav = 14,
    Backup = 15,
    Restore = 16,
    FindPlacesSize = 17,
    GetPlaceFromSuggestion = 18,
    GetProviders = 19,
    GetHeaderFromFullPlace = 20
};

constexpr int REPLY_OFFSET = 256;

/// The type of the reply to a request.
constexpr int replyTypeOf(MessageType request)
{
    return static_cast<int>(request) + REPLY_OFFSET;
}

/// What the service answers, or the transport in its place. Any other number is a failure without a name.
enum ReturnCode : int
{
    Success = 0,
    TransportFailed = 50, ///< Not sent, not received, or not readable.
    ProtocolFailed = 51,  ///< What some services answer to a request they cannot read.
    NoSuchPlace = 54,
    PlaceNotAcceptable = 57,
    NoStatus = 58, ///< No reply was read yet.
    StorageFailed = 59,
    NotPermitted = 60,
    NoService = 61, ///< Nobody serves the channel.
    LimitExceeded = 62,
    AlreadyStored = 63,
    Busy = 64,
    TookTooLong = 65,
    NotUnderstood = 66,
    ProviderFailed = 67,
    BackupFailed = 68,
    RestoreFailed = 69
};

/// Longest reason of a failed reply, in bytes. A longer one is cut by the service that sends it, and is none for the
/// client that receives it.
constexpr unsigned int REASON_SIZE = 1024;

/// The perimeter of a place as the wire carries it.
enum class Perimeter : int
{
    Default = 0,
    Personal = 1,
    Work = 2
};

/// Any number that is no perimeter becomes the default one, both ways.
Perimeter fromSystemPerimeter(vela::system::SecurityPerimeter::Type perimeter);
vela::system::SecurityPerimeter::Type toSystemPerimeter(Perimeter perimeter);

/// The service's channels.
struct ProtocolNames
{
    static constexpr char internal[] = "places";
    static constexpr char external[] = "places.external";
    static constexpr char unifiedSearch[] = "places_unified_search";
};

/// The first number of a search rule on the wire.
enum class SearchRuleKind : int
{
    Abstract = 1,
    And = 2,
    Nullary = 3,
    Or = 4,
    Disjoint = 5,
    UnaryInt = 11,
    UnaryString = 13
};

/// The first number of a sort rule on the wire.
enum class SortRuleKind : int
{
    Abstract = 1,
    Simple = 2,
    Combined = 3,
    Distance = 4
};

/// Bytes reserved for a reply before it is asked for; a longer one costs a second call.
namespace reply
{

enum Capacity : int
{
    Bare = 100,       ///< Removals and unfavourite.
    Short = 300,      ///< What answers little more than a status.
    Count = 512,      ///< Number of places a find would give.
    Place = 1000,     ///< One place by id or header.
    Header = 1024,    ///< The header of a full place.
    Providers = 2048, ///< The providers.
    List = 3000,      ///< Every find, and the tags in use.
    Long = 8192       ///< What providers and contacts give, and search terms.
};

} // namespace reply

} // namespace orix_places_protocol
