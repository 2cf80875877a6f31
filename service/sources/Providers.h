// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"

#include <functional>

namespace placesd
{

/// Results of all providers.
struct ProvidersAnswer
{
    std::vector<FoundPlace> places; ///< In the order of the providers.
    bool hasMore = false;           ///< Whether any provider has more results.
    /// Success when a provider answered or there is none; else the code of the first failure.
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
};

/// All providers of the service, asked in parallel. A failed provider does not affect the results of the others.
class Providers
{
public:
    explicit Providers(std::vector<std::unique_ptr<PlaceProvider>> providers);

    [[nodiscard]] bool isEmpty() const { return m_providers.empty(); }
    [[nodiscard]] QList<vela::platform::places::Provider> descriptions() const;

    /// Up to the requested number of results per provider, even if it returns fewer at a time.
    [[nodiscard]] ProvidersAnswer search(const ProviderSearch &search) const;
    /// The place that an external id of any provider identifies.
    [[nodiscard]] ProvidersAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                                          Deadline deadline) const;

    /// Data of a provider about a place.
    [[nodiscard]] static AuxiliaryAnswer auxiliaryData(PlaceProvider &provider, const PlaceIdentity &place,
                                                       Deadline deadline);

    /// The providers with records of a type, or of any type when it is empty; only the named provider if one is named.
    [[nodiscard]] std::vector<PlaceProvider *> providersFor(const QString &type,
                                                            const vela::platform::places::Provider &only) const;

private:
    using Ask = std::function<ProviderAnswer(PlaceProvider &)>;
    [[nodiscard]] ProvidersAnswer askAll(const Ask &ask) const;

    const std::vector<std::unique_ptr<PlaceProvider>> m_providers;
};

} // namespace placesd
