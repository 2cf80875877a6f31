// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vela/system/SecurityPerimeter.h>

/// The numbers of the wire protocol.
namespace orix_places_protocol
{

/// Type of a request. The type of its reply is this number plus REPLY_OFFSET.
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

/// The types of requests are the numbers from 1 to this one.
constexpr MessageType LAST_MESSAGE_TYPE = MessageType::GetHeaderFromFullPlace;

constexpr int REPLY_OFFSET = 256;

/// The type of the reply to a request.
constexpr int replyTypeOf(MessageType request)
{
    return static_cast<int>(request) + REPLY_OFFSET;
}

/// Code of a reply, or of the transport. All other numbers are unspecified failures.
enum ReturnCode : int
{
    Success = 0,
    TransportFailed = 50, ///< Not sent, not received, or not readable.
    ProtocolFailed = 51,  ///< Sent by some services for a request that they cannot read.
    NoSuchPlace = 54,
    PlaceNotAcceptable = 57,
    NoStatus = 58, ///< No reply is read yet.
    StorageFailed = 59,
    NotPermitted = 60,
    NoService = 61, ///< No service on the channel.
    LimitExceeded = 62,
    AlreadyStored = 63,
    Busy = 64,
    TookTooLong = 65,
    NotUnderstood = 66,
    ProviderFailed = 67,
    BackupFailed = 68,
    RestoreFailed = 69
};

/// Maximum length of the reason of a failed reply, in bytes. A service cuts a longer one; a client ignores it.
constexpr unsigned int REASON_SIZE = 1024;

/// Perimeter of a place on the wire.
enum class Perimeter : int
{
    Default = 0,
    Personal = 1,
    Work = 2
};

/// An invalid number becomes Default, in both directions.
Perimeter fromSystemPerimeter(vela::system::SecurityPerimeter::Type perimeter);
vela::system::SecurityPerimeter::Type toSystemPerimeter(Perimeter perimeter);

/// The service's channels.
struct ProtocolNames
{
    static constexpr char internal[] = "places";
    static constexpr char external[] = "places.external";
    static constexpr char unifiedSearch[] = "places_unified_search";
};

/// Kind of a search rule on the wire; its first number.
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

/// Kind of a sort rule on the wire; its first number.
enum class SortRuleKind : int
{
    Abstract = 1,
    Simple = 2,
    Combined = 3,
    Distance = 4
};

/// Bytes reserved for a reply; a longer reply needs a second call.
namespace reply
{

enum Capacity : int
{
    Bare = 100,       ///< Removals and unfavourite.
    Short = 300,      ///< Little more than a status.
    Count = 512,      ///< Number of places of a find.
    Place = 1000,     ///< One place by id or header.
    Header = 1024,    ///< The header of a full place.
    Providers = 2048, ///< The providers.
    List = 3000,      ///< Every find, and the tags in use.
    Long = 8192       ///< Data of providers and contacts, and search terms.
};

} // namespace reply

} // namespace orix_places_protocol
