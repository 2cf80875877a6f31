// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"

#include <functional>

namespace placesd
{

/// What came of asking all providers.
struct ProvidersAnswer
{
    std::vector<FoundPlace> places; ///< Those of the first provider come first.
    bool hasMore = false;           ///< Whether any of them goes on.
    /// Success when any of them answered; else how the first one failed. Also success when there is none to ask.
    orix_places_protocol::ReturnCode code = orix_places_protocol::Success;
};

/// All providers of the service. They are asked at once, and one that fails takes nothing from what the others give.
class Providers
{
public:
    explicit Providers(std::vector<std::unique_ptr<PlaceProvider>> providers);

    [[nodiscard]] bool isEmpty() const { return m_providers.empty(); }
    [[nodiscard]] QList<vela::platform::places::Provider> descriptions() const;

    /// As many results of each provider as are wanted, even if it gives fewer at a time.
    [[nodiscard]] ProvidersAnswer search(const ProviderSearch &search) const;
    /// The place that an external id of any provider's stands for.
    [[nodiscard]] ProvidersAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                                          Deadline deadline) const;

    /// What a provider has to say about a place.
    [[nodiscard]] static AuxiliaryAnswer auxiliaryData(PlaceProvider &provider, const PlaceIdentity &place,
                                                       Deadline deadline);

    /// The providers that give records of a type, or of any when it is empty; only the one named, when one is.
    [[nodiscard]] std::vector<PlaceProvider *> thatGive(const QString &type,
                                                        const vela::platform::places::Provider &only) const;

private:
    using Ask = std::function<ProviderAnswer(PlaceProvider &)>;
    [[nodiscard]] ProvidersAnswer askAll(const Ask &ask) const;

    const std::vector<std::unique_ptr<PlaceProvider>> m_providers;
};

} // namespace placesd
