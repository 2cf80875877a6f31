// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "places/AuxiliaryData.h"
#include "places/Coordinates.h"
#include "places/Provider.h"
#include "protocol/ProtocolTypes.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>
#include <vector>

namespace vela::platform::places
{
class Place;
}

namespace placesd
{

/// A place that is not stored. It may be shared by several results.
using FoundPlace = std::shared_ptr<const vela::platform::places::Place>;

/// What a search looks for.
enum class SearchKind
{
    Address,           ///< Places whose address or name contains every word of the term.
    Name,              ///< Places by name.
    Category,          ///< Places by category.
    CategoryOrName,    ///< Places by category or name.
    Suggestion,        ///< Completions of the term: places and categories.
    CategorySuggestion ///< Completions of the term among the categories.
};

/// Order of the results.
enum class SearchOrder
{
    Relevance, ///< Best match first; equal matches by distance or prominence.
    Name,
    NameBackwards,
    NearFirst,
    FarFirst
};

/// One request of a search.
struct ProviderSearch
{
    SearchKind kind = SearchKind::Name;
    QString term;
    vela::platform::places::Coordinates centre; ///< Centre of the user's map; invalid when unknown.
    SearchOrder order = SearchOrder::Relevance;
    vela::platform::places::Coordinates orderCentre; ///< Centre for an order by distance.
    int position = 0;                                ///< Number of results to skip.
    int count = 0;                                   ///< Maximum number of results; a provider may return fewer.
    Deadline deadline = Deadline::max();
};

/// Results of a search.
struct ProviderAnswer
{
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
    std::vector<FoundPlace> places;
    bool hasMore = false; ///< Whether there are more results.
};

/// Identifies a place for a request of additional data.
struct PlaceIdentity
{
    QString externalId; ///< The provider's id; empty when the place has none.
    QString name;
    vela::platform::places::Coordinates coordinates;
};

/// Result of a request for additional data.
struct AuxiliaryAnswer
{
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
    QList<vela::platform::places::AuxiliaryData> records;
};

/// A source of places that are not stored. The first auxiliary record of its places has the provider and a permanent
/// external id. Functions are thread-safe and return by the deadline: with code 65 when the time is over, with code 67
/// on a failure.
class PlaceProvider
{
public:
    PlaceProvider() = default;
    PlaceProvider(const PlaceProvider &) = delete;
    PlaceProvider &operator=(const PlaceProvider &) = delete;
    virtual ~PlaceProvider() = default;

    /// Name, URL and capabilities. Name and URL identify the provider permanently.
    [[nodiscard]] virtual vela::platform::places::Provider description() const = 0;

    virtual ProviderAnswer search(const ProviderSearch &search) = 0;

    /// The place with an external id of this provider; no place when there is none. The id of a category gives its
    /// place nearest to `centre`.
    virtual ProviderAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                                   Deadline deadline) = 0;

    virtual AuxiliaryAnswer auxiliaryData(const PlaceIdentity &place, Deadline deadline) = 0;
};

} // namespace placesd
