// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchResult.h"

#include "model/DebugParts.h"
#include "search/SearchResultPrivate.h"

namespace vela::platform::places
{

SearchResult::SearchResult()
    : d(new SearchResultPrivate)
{}

SearchResult::SearchResult(const SearchResult &other) = default;
SearchResult::SearchResult(SearchResult &&other) noexcept = default;
SearchResult &SearchResult::operator=(const SearchResult &other) = default;
SearchResult &SearchResult::operator=(SearchResult &&other) noexcept = default;
SearchResult::~SearchResult() = default;

SearchResultGroup::Type SearchResult::source() const
{
    return d->source();
}

SearchHandle SearchResult::handle() const
{
    return d->handle();
}

QList<QSharedPointer<AbstractPlace>> SearchResult::result() const
{
    return d->result();
}

QString SearchResult::reason() const
{
    return d->reason();
}

QDebug operator<<(QDebug debug, const SearchResult &result)
{
    DebugParts(debug, "SearchResult")
        .addName(result.source())
        .addCount(result.result().size(), "place")
        .addIf(result.handle().hasMoreData(), "more")
        .addIf(!result.reason().isEmpty(), result.reason());
    return debug;
}

} // namespace vela::platform::places
