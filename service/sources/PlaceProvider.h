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

/// A place that is not stored. Whoever found it may hand it out again.
using FoundPlace = std::shared_ptr<const vela::platform::places::Place>;

/// What a search wants to be found.
enum class SearchKind
{
    Address,           ///< Places whose address, or name, has every word of the term.
    Name,              ///< Places by name.
    Category,          ///< Places by category.
    CategoryOrName,    ///< Places by category or name.
    Suggestion,        ///< Completions of the term: places and categories.
    CategorySuggestion ///< Completions of the term among the categories.
};

/// What a search wants to come first.
enum class SearchOrder
{
    Relevance, ///< What fits best, and of that the nearest or the best known.
    Name,
    NameBackwards,
    NearFirst,
    FarFirst
};

/// One step of a search.
struct ProviderSearch
{
    SearchKind kind = SearchKind::Name;
    QString term;
    vela::platform::places::Coordinates centre; ///< Where the user looks; invalid when not known.
    SearchOrder order = SearchOrder::Relevance;
    vela::platform::places::Coordinates orderCentre; ///< What is near or far from where.
    int position = 0;                                ///< Number of results before the first that is wanted.
    int count = 0;                                   ///< Number of results wanted; there may be fewer.
    Deadline deadline = Deadline::max();
};

/// What came of a search.
struct ProviderAnswer
{
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
    std::vector<FoundPlace> places;
    bool hasMore = false; ///< Whether the search goes on behind these.
};

/// What is known of a place that additional data is wanted for.
struct PlaceIdentity
{
    QString externalId; ///< The provider's own; empty when the place has none.
    QString name;
    vela::platform::places::Coordinates coordinates;
};

/// What came of asking for additional data.
struct AuxiliaryAnswer
{
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
    QList<vela::platform::places::AuxiliaryData> records;
};

/// A source of places that are not stored. Its places carry, as their first auxiliary record, one with the provider and
/// an external id that stays the same. Every function is called on any thread, several at once, and returns by the
/// deadline; what it cannot do by then is code 65, and what fails is code 67.
class PlaceProvider
{
public:
    PlaceProvider() = default;
    PlaceProvider(const PlaceProvider &) = delete;
    PlaceProvider &operator=(const PlaceProvider &) = delete;
    virtual ~PlaceProvider() = default;

    /// Name, URL and what it can be asked for. The name and URL identify it for good.
    [[nodiscard]] virtual vela::platform::places::Provider description() const = 0;

    virtual ProviderAnswer search(const ProviderSearch &search) = 0;

    /// The place that an external id of the provider's stands for; no place when there is none. What stands for a
    /// category gives the place of it that is nearest to `centre`.
    virtual ProviderAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                                   Deadline deadline) = 0;

    virtual AuxiliaryAnswer auxiliaryData(const PlaceIdentity &place, Deadline deadline) = 0;
};

} // namespace placesd
