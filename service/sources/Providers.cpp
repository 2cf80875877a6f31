// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Providers.h"

#include "Log.h"

#include <algorithm>
#include <future>

namespace placesd
{

using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;

namespace
{

/// Repeats a search until the requested number of results, or all of them, are there.
ProviderAnswer searchWhole(PlaceProvider &provider, const ProviderSearch &search)
{
    ProviderAnswer whole;
    const auto wanted = static_cast<std::size_t>(search.count);
    do {
        ProviderSearch step = search;
        step.position += static_cast<int>(whole.places.size());
        step.count -= static_cast<int>(whole.places.size());
        ProviderAnswer part = provider.search(step);
        whole.code = part.code;
        if (part.code != ReturnCode::Success)
            return whole;
        // A provider that promises more results but returns none has no more.
        whole.hasMore = part.hasMore && !part.places.empty();
        whole.places.insert(whole.places.end(), part.places.begin(), part.places.end());
    } while (whole.hasMore && whole.places.size() < wanted);
    whole.hasMore = whole.hasMore || whole.places.size() > wanted;
    whole.places.resize(std::min(whole.places.size(), wanted));
    return whole;
}

/// Runs a request; an exception counts as a failure of the provider.
template <typename Ask>
auto guarded(const PlaceProvider &provider, const Ask &ask) -> decltype(ask())
{
    decltype(ask()) answer;
    try {
        return ask();
    } catch (const std::exception &error) {
        logError("the provider %s failed: %s", qUtf8Printable(provider.description().name()), error.what());
        answer.code = ReturnCode::ProviderFailed;
    }
    return answer;
}

} // namespace

Providers::Providers(std::vector<std::unique_ptr<PlaceProvider>> providers)
    : m_providers(std::move(providers))
{}

QList<Provider> Providers::descriptions() const
{
    QList<Provider> descriptions;
    for (const auto &provider : m_providers)
        descriptions.append(provider->description());
    return descriptions;
}

ProvidersAnswer Providers::askAll(const Ask &ask) const
{
    // The first request runs on this thread, each other one on a new thread.
    std::vector<std::future<ProviderAnswer>> answers;
    for (std::size_t i = 0; i < m_providers.size(); ++i) {
        const auto how = i == 0 ? std::launch::deferred : std::launch::async;
        PlaceProvider &provider = *m_providers[i];
        answers.push_back(
            std::async(how, [&ask, &provider] { return guarded(provider, [&] { return ask(provider); }); }));
    }
    ProvidersAnswer all;
    bool hasAnswer = m_providers.empty();
    for (auto &future : answers) {
        const ProviderAnswer answer = future.get();
        all.places.insert(all.places.end(), answer.places.begin(), answer.places.end());
        all.hasMore = all.hasMore || answer.hasMore;
        hasAnswer = hasAnswer || answer.code == ReturnCode::Success;
        if (all.code == ReturnCode::Success)
            all.code = answer.code;
    }
    if (hasAnswer)
        all.code = ReturnCode::Success;
    return all;
}

ProvidersAnswer Providers::search(const ProviderSearch &search) const
{
    return askAll([&search](PlaceProvider &provider) { return searchWhole(provider, search); });
}

ProvidersAnswer Providers::resolve(const QString &externalId, const Coordinates &centre, Deadline deadline) const
{
    return askAll([&](PlaceProvider &provider) { return provider.resolve(externalId, centre, deadline); });
}

AuxiliaryAnswer Providers::auxiliaryData(PlaceProvider &provider, const PlaceIdentity &place, Deadline deadline)
{
    return guarded(provider, [&] { return provider.auxiliaryData(place, deadline); });
}

std::vector<PlaceProvider *> Providers::providersFor(const QString &type, const Provider &only) const
{
    std::vector<PlaceProvider *> found;
    for (const auto &provider : m_providers) {
        const Provider description = provider->description();
        const bool gives = description.canRequestAdditionalData()
                           && (type.isEmpty() || description.supportedDataTypes().contains(type));
        if (gives && (!only.isValid() || only == description))
            found.push_back(provider.get());
    }
    return found;
}

} // namespace placesd
