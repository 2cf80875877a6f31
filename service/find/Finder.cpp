// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"

#include "find/Sources.h"
#include "Limits.h"
#include "model/InternalTags.h"
#include "places/Place.h"
#include "places/SortRule.h"

#include <algorithm>

namespace placesd
{

using namespace vela::platform::places;
using orix_places_protocol::SearchRuleKind;
using orix_places_protocol::SortRuleKind;

namespace
{

/// What a sort rule asks the providers to give first, as far as they can.
SearchOrder orderFor(const Sort &sort)
{
    const bool descending = sort.order == SortOrder::Descending;
    if (sort.kind == SortRuleKind::Distance)
        return descending ? SearchOrder::FarFirst : SearchOrder::NearFirst;
    if (sort.kind == SortRuleKind::Simple && sort.field == SortField::Name)
        return descending ? SearchOrder::NameBackwards : SearchOrder::Name;
    return SearchOrder::Relevance;
}

Scope scopeOf(int batch)
{
    return batch == 0 ? Scope::WithCandidates : Scope::MoreCandidates;
}

/// A term that was searched for, as a result.
FoundPlace placeOf(const QString &term)
{
    auto place = std::make_shared<Place>();
    place->setName(term);
    place->addTag(QLatin1String(InternalTags::RecentSearchTerm));
    // What the place itself calls a search term.
    place->addTag(QStringLiteral("_search-term_"));
    return place;
}

} // namespace

Finder::Finder(Store &store, PlaceSources sources, Query query, bool external, Deadline deadline)
    : m_store(store)
    , m_from(sources)
    , m_query(std::move(query))
    , m_external(external)
    , m_deadline(deadline)
    , m_sources(numberSources(m_query.rule))
{
    for (const Rule *leaf : m_sources) {
        const std::optional<SearchKind> kind = providerSearchOf(*leaf);
        if (kind && !m_from.providers.isEmpty())
            m_searches.push_back({leaf->source, searchFor(*leaf, *kind)});
    }
}

bool Finder::asksContacts(const Rule &leaf) const
{
    const SourceKind kind = sourceKindOf(leaf);
    return m_from.contacts && !m_external && (kind == SourceKind::Contacts || kind == SourceKind::MeetingRooms);
}

bool Finder::takesLong() const
{
    return asksProviders() || std::any_of(m_sources.begin(), m_sources.end(), [this](const Rule *leaf) {
               return asksContacts(*leaf) && !m_from.contacts->isRead();
           });
}

Finder::ReturnCode Finder::fetchLocal()
{
    if (m_sources.size() > limits::RULE_SOURCES)
        return ReturnCode::LimitExceeded;
    for (const Rule *leaf : m_sources) {
        const SourceKind kind = sourceKindOf(*leaf);
        if (kind == SourceKind::SearchTerms && !m_external)
            takeLocal(*leaf, searchTerms(leaf->text));
        if (!asksContacts(*leaf))
            continue;
        const auto found = m_from.contacts->find(leaf->text, kind == SourceKind::MeetingRooms, m_deadline);
        if (!found)
            return ReturnCode::TookTooLong;
        takeLocal(*leaf, *found);
    }
    return ReturnCode::Success;
}

void Finder::takeLocal(const Rule &leaf, const std::vector<FoundPlace> &places)
{
    for (const FoundPlace &place : places)
        m_local.push_back({leaf.source, place});
}

std::vector<FoundPlace> Finder::searchTerms(const QString &prefix)
{
    std::vector<FoundPlace> places;
    for (const QString &term : m_store.recentTerms(prefix))
        places.push_back(placeOf(term));
    return places;
}

ProviderSearch Finder::searchFor(const Rule &leaf, SearchKind kind) const
{
    const Sort &sort = m_query.sort.kind == SortRuleKind::Combined && !m_query.sort.members.empty()
                           ? m_query.sort.members.front()
                           : m_query.sort;
    ProviderSearch search;
    search.kind = kind;
    search.term = leaf.text;
    search.centre = Coordinates(m_query.latitude, m_query.longitude);
    search.order = orderFor(sort);
    search.orderCentre = Coordinates(sort.latitude, sort.longitude);
    search.deadline = m_deadline;
    return search;
}

/// Batches can follow one another when only one leaf asks for them, and nothing has to stand behind all of them.
bool Finder::canBeBatched() const
{
    const Rule &rule = m_query.rule;
    if (m_searches.size() != 1)
        return false;
    const bool concatenates = joinsSearches(rule) && rule.kind == SearchRuleKind::And;
    return !concatenates || std::none_of(rule.members.begin(), rule.members.end() - 1, placesd::asksProviders);
}

Finder::ReturnCode Finder::find(Page &page)
{
    if (const ReturnCode code = fetchLocal(); code != ReturnCode::Success)
        return code;
    return looksAtCandidates() ? findAmongAll(page) : findStored(page);
}

Finder::ReturnCode Finder::findStored(Page &page)
{
    const FindSql find(m_query, m_external);
    if (!find.isUnderstood())
        return ReturnCode::NotUnderstood;
    page.records = m_store.find(find, m_query.count + 1, m_query.offset);
    page.hasMore = page.records.size() > static_cast<std::size_t>(m_query.count);
    if (page.hasMore)
        page.records.pop_back();
    page.cursors.resize(page.records.size());
    return ReturnCode::Success;
}

Finder::ReturnCode Finder::findAmongAll(Page &page)
{
    const int size = canBeBatched() ? limits::PROVIDER_BATCH : limits::PROVIDER_RESULTS_AT_ONCE;
    const int lastBatch = canBeBatched() ? limits::PROVIDER_RESULTS / size - 1 : 0;
    const bool hasCursor = asksProviders() && m_query.providerPrimaryIndex >= 0;
    Cursor cursor{0, m_query.offset};
    if (hasCursor)
        cursor = {m_query.providerPrimaryIndex, std::max(0, m_query.providerSecondaryIndex)};
    if (!FindSql(m_query, m_external, scopeOf(cursor.batch)).isUnderstood())
        return ReturnCode::NotUnderstood;

    for (; cursor.batch <= lastBatch; ++cursor.batch) {
        if (const ReturnCode code = fetch(cursor.batch, size); code != ReturnCode::Success) {
            // What was found already is not lost; the next page fails.
            page.hasMore = true;
            page.next = {cursor.batch, 0};
            return page.records.empty() ? code : ReturnCode::Success;
        }
        if (takeBatch(page, cursor) || !m_hasMoreBatches)
            break;
        // A place in the whole list may be far behind this batch; a cursor is a place in its own.
        const FindSql find(m_query, m_external, scopeOf(cursor.batch));
        const bool isBehind = !hasCursor && page.records.empty() && cursor.position > 0;
        cursor.position = isBehind ? cursor.position - m_store.count(find, m_candidates) : 0;
    }
    if (asksProviders())
        page.next = cursor;
    return ReturnCode::Success;
}

bool Finder::takeBatch(Page &page, Cursor &cursor)
{
    const auto wanted = static_cast<std::size_t>(m_query.count);
    const FindSql find(m_query, m_external, scopeOf(cursor.batch));
    const auto missing = static_cast<int>(wanted - page.records.size());
    for (std::string &record : m_store.find(find, m_candidates, m_query.headerOnly, missing + 1, cursor.position)) {
        if (page.records.size() == wanted) {
            page.hasMore = true;
            return true;
        }
        page.records.push_back(std::move(record));
        page.cursors.push_back(asksProviders() ? cursor : Cursor());
        ++cursor.position;
    }
    return false;
}

Finder::ReturnCode Finder::fetch(int batch, int size)
{
    m_candidates = m_local;
    m_hasMoreBatches = false;
    ReturnCode failure = ReturnCode::Success;
    bool hasAnswer = m_searches.empty();
    for (Search &search : m_searches) {
        search.search.position = batch * size;
        search.search.count = size;
        const ProvidersAnswer answer = m_from.providers.search(search.search);
        for (const FoundPlace &place : answer.places)
            m_candidates.push_back({search.source, place});
        m_hasMoreBatches = m_hasMoreBatches || answer.hasMore;
        hasAnswer = hasAnswer || answer.code == ReturnCode::Success;
        if (failure == ReturnCode::Success)
            failure = answer.code;
    }
    return hasAnswer || !needsProviders(m_query.rule) ? ReturnCode::Success : failure;
}

Finder::ReturnCode Finder::count(int &count)
{
    if (const ReturnCode code = fetchLocal(); code != ReturnCode::Success)
        return code;
    const FindSql find(m_query, m_external, looksAtCandidates() ? Scope::WithCandidates : Scope::Stored);
    if (!find.isUnderstood())
        return ReturnCode::NotUnderstood;
    if (!looksAtCandidates()) {
        count = m_store.count(find);
        return ReturnCode::Success;
    }
    const ReturnCode code = fetch(0, canBeBatched() ? limits::PROVIDER_RESULTS : limits::PROVIDER_RESULTS_AT_ONCE);
    if (code == ReturnCode::Success)
        count = m_store.count(find, m_candidates);
    return code;
}

} // namespace placesd
