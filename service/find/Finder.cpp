// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"

#include "find/Leaves.h"
#include "find/Sources.h"
#include "Limits.h"
#include "model/InternalTags.h"
#include "places/Place.h"
#include "places/SortRule.h"
#include "store/Records.h"
#include "store/Store.h"
#include "text/JoinedVocabulary.h"

#include <algorithm>
#include <limits>

#include <sqlite3.h>

namespace placesd
{

using namespace vela::platform::places;
using orix_places_protocol::Perimeter;
using orix_places_protocol::SearchRuleKind;
using orix_places_protocol::SortRuleKind;

namespace
{

/// The order to request from the providers for a sort rule.
SearchOrder orderFor(const Sort &sort)
{
    const bool descending = sort.order == SortOrder::Descending;
    if (sort.kind == SortRuleKind::Distance)
        return descending ? SearchOrder::FarFirst : SearchOrder::NearFirst;
    if (sort.kind == SortRuleKind::Simple && sort.field == SortField::Name)
        return descending ? SearchOrder::NameBackwards : SearchOrder::Name;
    return SearchOrder::Relevance;
}

/// A recent search term as a result.
FoundPlace placeOf(const QString &term)
{
    auto place = std::make_shared<Place>();
    place->setName(term);
    place->addTag(QLatin1String(InternalTags::RecentSearchTerm));
    // The tag that marks a search term.
    place->addTag(QStringLiteral("_search-term_"));
    return place;
}

/// The searches that a rule concatenates; any other rule is one search.
std::vector<const Rule *> concatenated(const Rule &rule)
{
    if (!joinsSearches(rule) || rule.kind != SearchRuleKind::And)
        return {&rule};
    std::vector<const Rule *> searches;
    for (const Rule &member : rule.members)
        searches.push_back(&member);
    return searches;
}

void addTerms(const Rule &rule, FindTerms &terms)
{
    if (isByWords(rule))
        terms.emplace(rule.text, nullptr);
    for (const Rule &member : rule.members)
        addTerms(member, terms);
}

} // namespace

Finder::Finder(Store &store, PlaceSources sources, Query query, bool external, Deadline deadline, Plan plan)
    : m_store(store)
    , m_from(sources)
    , m_query(std::move(query))
    , m_external(external)
    , m_deadline(deadline)
    , m_plan(plan)
    , m_order(m_query.sort)
    , m_typedTerm(typedTerm(m_query.rule).toUtf8())
    , m_sources(numberSources(m_query.rule))
{
    addTerms(m_query.rule, m_terms);
    readAsTyped(true);
    for (const Rule *leaf : m_sources) {
        const std::optional<SearchKind> kind = providerSearchOf(*leaf);
        if (kind && !m_from.providers.isEmpty())
            m_asks.push_back({leaf->source, searchFor(*leaf, *kind)});
    }
}

bool Finder::asksContacts() const
{
    return std::any_of(m_sources.begin(), m_sources.end(), [this](const Rule *leaf) { return asksContacts(*leaf); });
}

bool Finder::asksContacts(const Rule &leaf) const
{
    const SourceKind kind = sourceKindOf(leaf);
    return m_from.contacts && !m_external && (kind == SourceKind::Contacts || kind == SourceKind::MeetingRooms);
}

bool Finder::needsSlowPool() const
{
    return asksProviders() || (asksContacts() && !m_from.contacts->isRead());
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

/// Batches can follow each other only when one leaf needs them and no other result comes after all of them.
bool Finder::canBeBatched() const
{
    const std::vector<const Rule *> searches = concatenated(m_query.rule);
    return m_asks.size() == 1 && std::none_of(searches.begin(), searches.end() - 1, [](const Rule *rule) {
               return placesd::asksProviders(*rule);
           });
}

// ------------------------------------------------------------------------------------------------- making searches

Finder::ReturnCode Finder::makeSearches(bool isFirstBatch)
{
    if (m_sources.size() > limits::RULE_SOURCES) {
        return refuse(ReturnCode::LimitExceeded, "the search rule has " + std::to_string(m_sources.size())
                                                     + " members for other sources than the store; the maximum is "
                                                     + std::to_string(limits::RULE_SOURCES));
    }
    if (m_order.criteria() > limits::SORT_CRITERIA) {
        return refuse(ReturnCode::LimitExceeded, "the sort rule has " + std::to_string(m_order.criteria())
                                                     + " criteria; the maximum is "
                                                     + std::to_string(limits::SORT_CRITERIA));
    }
    m_searches.clear();
    m_candidates = std::make_unique<Candidates>(m_store, m_external);
    RuleCompiler compiler(m_store, *m_candidates, m_terms, m_external);
    const std::vector<const Rule *> rules = concatenated(m_query.rule);
    for (std::size_t i = 0; i < rules.size(); ++i)
        m_searches.push_back({rules[i], conditionOf(compiler, rules, i, isFirstBatch), hasSource(*rules[i]), false});
    if (!compiler.isUnderstood() || !m_order.isUnderstood()) {
        const std::string which = compiler.isUnderstood() ? "sort rule" : "search rule";
        return refuse(ReturnCode::NotUnderstood, "the " + which + " has a number that this service does not support");
    }
    return ReturnCode::Success;
}

Finder::ReturnCode Finder::refuse(ReturnCode code, std::string reason)
{
    m_reason = std::move(reason);
    return code;
}

/// A place found by several searches belongs to the first one. After the first batch, results come from the providers
/// only, without places of the first batch.
ConditionPtr Finder::conditionOf(RuleCompiler &compiler, const std::vector<const Rule *> &rules, std::size_t index,
                                 bool isFirstBatch) const
{
    Conditions conditions;
    conditions.push_back(compiler.compileSearch(*rules[index]));
    for (std::size_t i = 0; i < index; ++i)
        conditions.push_back(std::make_unique<Not>(compiler.compileSearch(*rules[i])));
    if (!isFirstBatch) {
        conditions.push_back(std::make_unique<FoundCondition>(*m_candidates, FoundCondition::ANY));
        conditions.push_back(std::make_unique<Not>(compiler.compileWithoutProviders(m_query.rule)));
    }
    if (m_external)
        conditions.push_back(std::make_unique<OpenCondition>(m_store));
    if (m_query.perimeter != Perimeter::Default)
        conditions.push_back(std::make_unique<PerimeterCondition>(m_query.perimeter));
    return conditions.size() == 1 ? std::move(conditions.front()) : std::make_unique<AllOf>(std::move(conditions));
}

std::vector<FoundPlace> Finder::localPlaces(const Rule &leaf, ReturnCode &code)
{
    std::vector<FoundPlace> places;
    const SourceKind kind = sourceKindOf(leaf);
    if (kind == SourceKind::SearchTerms && !m_external) {
        const QStringList terms = m_store.recentTerms(leaf.text);
        for (const QString &term : terms)
            places.push_back(placeOf(term));
    }
    if (asksContacts(leaf)) {
        auto found = m_from.contacts->find(m_terms.at(leaf.text)->test(), kind == SourceKind::MeetingRooms, m_deadline);
        if (found)
            return std::move(*found);
        code = ReturnCode::TookTooLong;
    }
    return places;
}

Finder::ReturnCode Finder::fetchLocal(const Rule &rule)
{
    ReturnCode code = ReturnCode::Success;
    if (rule.source != Rule::NO_SOURCE)
        m_candidates->add(rule.source, localPlaces(rule, code));
    for (const Rule &member : rule.members) {
        if (code == ReturnCode::Success)
            code = fetchLocal(member);
    }
    return code;
}

Finder::ReturnCode Finder::fetchLocal(Search &search)
{
    if (std::exchange(search.isFetched, true))
        return ReturnCode::Success;
    return fetchLocal(*search.rule);
}

// ------------------------------------------------------------------------------------------------- reading terms

void Finder::read(const QString &term, Reading reading)
{
    std::shared_ptr<const SearchTerm> &known = m_terms[term];
    // Reuse the ids and counts of the same reading.
    if (known && known->test().isLike(TermTest(term, reading)))
        return;
    // The plan by order tests places one by one and needs no ids.
    const int mostIds = m_plan == Plan::ByOrder ? 0 : SearchTerm::MOST_IDS;
    known = std::make_shared<SearchTerm>(m_store, term, std::move(reading), mostIds);
}

void Finder::readAsTyped(bool inNames)
{
    for (const auto &known : m_terms)
        read(known.first, {{Wording::of(known.first)}, inNames});
}

Finder::ReturnCode Finder::runByReading(const std::function<ReturnCode()> &work)
{
    ReturnCode code = makeSearches(true);
    if (code == ReturnCode::Success)
        code = work();
    if (code != ReturnCode::Success || isAnswered())
        return code;
    const bool areAllTried = std::all_of(m_searches.begin(), m_searches.end(), [](const Search &search) {
        return !hasWords(*search.rule) || search.finds.has_value();
    });
    code = chooseReadings(areAllTried);
    if (code == ReturnCode::Success)
        code = makeSearches(true);
    return code == ReturnCode::Success ? work() : code;
}

bool Finder::isAnswered() const
{
    const bool hasTerms =
        std::any_of(m_terms.begin(), m_terms.end(), [](const auto &term) { return term.second->test().hasWords(); });
    return !hasTerms || std::any_of(m_searches.begin(), m_searches.end(), [](const Search &search) {
        return hasWords(*search.rule) && search.finds.value_or(false);
    });
}

Finder::ReturnCode Finder::chooseReadings(bool isFirstTried)
{
    ReturnCode code = ReturnCode::Success;
    if (m_terms.size() == 1) {
        chooseReadingOf(m_terms.begin()->first, isFirstTried, code);
    } else if (!m_terms.empty() && (isFirstTried || !findAnyByWords(code))) {
        readAsTyped(false);
        if (!findAnyByWords(code))
            readAsTyped(true);
    }
    return code;
}

void Finder::chooseReadingOf(const QString &term, bool isFirstTried, ReturnCode &code)
{
    std::shared_ptr<const Vocabulary> contacts;
    if (asksContacts())
        contacts = m_from.contacts->vocabulary(m_deadline);
    const CorrectionSource &stored = m_store.vocabulary();
    const JoinedVocabulary joined(stored, contacts ? *contacts : stored);
    const CorrectionSource &vocabulary = contacts ? static_cast<const CorrectionSource &>(joined) : stored;
    const auto finds = [&](const Reading &reading) {
        if (reading.inNames && isFirstTried)
            return false;
        read(term, reading);
        return findAnyByWords(code);
    };
    const auto frequency = [&](const Reading &reading) { return countWithWords(term, reading, code); };
    read(term, chooseReading(Wording::of(term), {vocabulary, finds, frequency}));
}

/// Also true when the answer is unknown; the find then fails.
bool Finder::findAnyByWords(ReturnCode &code)
{
    if (code == ReturnCode::Success)
        code = makeSearches(true);
    for (Search &search : m_searches) {
        if (!hasWords(*search.rule))
            continue;
        if (code == ReturnCode::Success)
            code = fetchLocal(search);
        if (code != ReturnCode::Success || !hitsOf(search, 1).empty())
            return true;
    }
    return code != ReturnCode::Success;
}

qint64 Finder::countWithWords(const QString &term, const Reading &reading, ReturnCode &code)
{
    const SearchTerm counted(m_store, term, reading);
    qint64 count = counted.count(limits::COUNTED_PLACES);
    if (code == ReturnCode::Success && asksContacts()) {
        if (const auto contacts = m_from.contacts->find(counted.test(), false, m_deadline))
            count += static_cast<qint64>(contacts->size());
    }
    return count;
}

// -------------------------------------------------------------------------------------------------------- finding

bool Page::add(std::string record, const Cursor &cursor)
{
    // Alignment, and the two numbers of the cursor.
    constexpr std::size_t SIZE_OF_FRAME = 16;
    const std::size_t size = record.size() + SIZE_OF_FRAME;
    if (size > room) {
        isFull = hasMore = true;
        return false;
    }
    room -= size;
    records.push_back(std::move(record));
    cursors.push_back(cursor);
    return true;
}

Status Finder::find(Page &page)
{
    ReturnCode code = findAny(page);
    // The client would request an empty page with more results again and again.
    if (code == ReturnCode::Success && page.isFull && page.records.empty())
        code = refuse(ReturnCode::Busy, "the memory for a reply is not enough for one place; try again");
    return {code, m_reason};
}

Finder::ReturnCode Finder::findAny(Page &page)
{
    return asksProviders() ? findByBatches(page) : findWithoutProviders(page);
}

Finder::ReturnCode Finder::findWithoutProviders(Page &page)
{
    const auto snapshot = m_store.snapshot();
    std::vector<qint64> ids;
    const auto wanted = static_cast<std::size_t>(m_query.count);
    const ReturnCode code = runByReading([&] {
        ids.clear();
        return collect(static_cast<std::size_t>(m_query.offset), wanted + 1, ids);
    });
    if (code != ReturnCode::Success)
        return code;
    page.hasMore = ids.size() > wanted;
    ids.resize(std::min(ids.size(), wanted));
    for (const qint64 id : ids) {
        if (std::string record = recordOf(id); !record.empty() && !page.add(std::move(record), Cursor()))
            break;
    }
    return ReturnCode::Success;
}

/// Providers choose readings themselves. For all other sources all pages use the same reading.
Finder::ReturnCode Finder::readForProviders()
{
    const auto snapshot = m_store.snapshot();
    const ReturnCode code = chooseReadings(false);
    return code == ReturnCode::Success ? makeSearches(true) : code;
}

Finder::ReturnCode Finder::findByBatches(Page &page)
{
    const int size = canBeBatched() ? limits::PROVIDER_BATCH : limits::PROVIDER_RESULTS_AT_ONCE;
    const int lastBatch = canBeBatched() ? limits::PROVIDER_RESULTS / size - 1 : 0;
    const bool hasCursor = m_query.providerPrimaryIndex >= 0;
    Cursor cursor{0, m_query.offset};
    if (hasCursor)
        cursor = {m_query.providerPrimaryIndex, std::max(0, m_query.providerSecondaryIndex)};
    if (const ReturnCode code = readForProviders(); code != ReturnCode::Success)
        return code;

    for (; cursor.batch <= lastBatch; ++cursor.batch) {
        bool isComplete = false;
        ReturnCode code = ask(cursor.batch, size);
        if (code != ReturnCode::Success) {
            // Keep the results so far; the next page reports the failure.
            page.hasMore = true;
            page.next = {cursor.batch, 0};
            return page.records.empty() ? code : ReturnCode::Success;
        }
        const auto snapshot = m_store.snapshot();
        code = takeAnswers(cursor.batch);
        if (code == ReturnCode::Success)
            code = takeBatch(page, cursor, isComplete);
        if (code != ReturnCode::Success)
            return code;
        if (isComplete || !m_hasMoreBatches)
            break;
        // The offset counts from the start of all results and can be far after this batch; a cursor counts within its
        // batch.
        qint64 passed = cursor.position;
        const bool isBehind = !hasCursor && page.records.empty() && cursor.position > 0;
        if (isBehind)
            code = countAll(passed);
        if (code != ReturnCode::Success)
            return code;
        cursor.position = static_cast<int>(cursor.position - std::min<qint64>(passed, cursor.position));
    }
    page.next = cursor;
    return ReturnCode::Success;
}

Finder::ReturnCode Finder::takeBatch(Page &page, Cursor &cursor, bool &isComplete)
{
    const auto wanted = static_cast<std::size_t>(m_query.count);
    std::vector<qint64> ids;
    const ReturnCode code = collect(static_cast<std::size_t>(cursor.position), wanted - page.records.size() + 1, ids);
    for (const qint64 id : ids) {
        isComplete = page.records.size() == wanted;
        page.hasMore = isComplete;
        if (isComplete)
            break;
        if (std::string record = recordOf(id); !record.empty())
            isComplete = !page.add(std::move(record), cursor);
        if (isComplete)
            break;
        ++cursor.position;
    }
    return code;
}

/// Asks the providers without a snapshot of the store, which would stay open while they answer.
Finder::ReturnCode Finder::ask(int batch, int size)
{
    m_answers.clear();
    m_hasMoreBatches = false;
    ReturnCode failure = ReturnCode::Success;
    bool hasAnswer = false;
    for (Ask &ask : m_asks) {
        ask.search.position = batch * size;
        ask.search.count = size;
        m_answers.push_back(m_from.providers.search(ask.search));
        const ProvidersAnswer &answer = m_answers.back();
        m_hasMoreBatches = m_hasMoreBatches || answer.hasMore;
        hasAnswer = hasAnswer || answer.code == ReturnCode::Success;
        if (failure == ReturnCode::Success)
            failure = answer.code;
    }
    return hasAnswer || !needsProviders(m_query.rule) ? ReturnCode::Success : failure;
}

Finder::ReturnCode Finder::takeAnswers(int batch)
{
    if (const ReturnCode code = makeSearches(batch == 0); code != ReturnCode::Success)
        return code;
    // Results of other sources come first and get the same ids in all batches.
    for (Search &search : m_searches) {
        if (const ReturnCode code = fetchLocal(search); code != ReturnCode::Success)
            return code;
    }
    for (std::size_t i = 0; i < m_asks.size(); ++i)
        m_candidates->add(m_asks[i].source, m_answers[i].places);
    return ReturnCode::Success;
}

Finder::ReturnCode Finder::collect(std::size_t offset, std::size_t count, std::vector<qint64> &ids)
{
    for (Search &search : m_searches) {
        if (const ReturnCode code = fetchLocal(search); code != ReturnCode::Success)
            return code;
        const std::vector<Hit> hits = hitsOf(search, offset + count - ids.size());
        search.finds = !hits.empty();
        for (std::size_t i = offset; i < hits.size(); ++i)
            ids.push_back(hits[i].id);
        offset -= std::min(offset, hits.size());
        if (ids.size() == count)
            break;
    }
    return ReturnCode::Success;
}

std::vector<Hit> Finder::hitsOf(const Search &search, std::size_t wanted)
{
    std::vector<Hit> others = candidateHits(search);
    const std::size_t first = std::min(others.size(), wanted);
    std::partial_sort(others.begin(), others.begin() + static_cast<std::ptrdiff_t>(first), others.end(),
                      [this](const Hit &a, const Hit &b) { return m_order(a.key, b.key); });
    others.resize(first);
    std::vector<Hit> stored = StoredSearch(m_store, *search.condition, m_order, m_plan).first(wanted, !others.empty());
    if (others.empty())
        return stored;
    std::vector<Hit> all;
    std::merge(std::make_move_iterator(stored.begin()), std::make_move_iterator(stored.end()), others.begin(),
               others.end(), std::back_inserter(all),
               [this](const Hit &a, const Hit &b) { return m_order(a.key, b.key); });
    all.resize(std::min(all.size(), wanted));
    return all;
}

/// The candidates that a search finds, from the sources that it asked.
std::vector<Hit> Finder::candidateHits(const Search &search) const
{
    std::vector<Hit> hits;
    if (!search.takesCandidates)
        return hits;
    int rows = 1;
    for (const CandidateRow &row : m_candidates->rows()) {
        if (rows++ % ROWS_PER_CHECK == 0)
            m_store.requireTime();
        if (search.condition->test(row))
            hits.push_back({row.id(), m_order.keyOf(row)});
    }
    return hits;
}

std::string Finder::recordOf(qint64 id)
{
    std::string record;
    if (const CandidateRow *row = m_candidates->row(id))
        record = m_query.headerOnly ? headerOf(*row->place()) : fullRecordOf(*row->place());
    else
        record = m_store.readableRecord(id, m_query.headerOnly);
    if (!record.empty() && !m_typedTerm.isEmpty())
        addSearchTerm(record, m_typedTerm);
    return record;
}

// ------------------------------------------------------------------------------------------------------- counting

Status Finder::count(int &count)
{
    qint64 all = 0;
    const ReturnCode code = asksProviders() ? countWithProviders(all) : countWithoutProviders(all);
    count = static_cast<int>(std::min<qint64>(all, std::numeric_limits<int>::max()));
    return {code, m_reason};
}

Finder::ReturnCode Finder::countWithoutProviders(qint64 &count)
{
    const auto snapshot = m_store.snapshot();
    return runByReading([&] { return countAll(count); });
}

Finder::ReturnCode Finder::countWithProviders(qint64 &count)
{
    ReturnCode code = readForProviders();
    if (code == ReturnCode::Success)
        code = ask(0, canBeBatched() ? limits::PROVIDER_RESULTS : limits::PROVIDER_RESULTS_AT_ONCE);
    if (code != ReturnCode::Success)
        return code;
    const auto snapshot = m_store.snapshot();
    code = takeAnswers(0);
    return code == ReturnCode::Success ? countAll(count) : code;
}

Finder::ReturnCode Finder::countAll(qint64 &count)
{
    count = 0;
    for (Search &search : m_searches) {
        if (const ReturnCode code = fetchLocal(search); code != ReturnCode::Success)
            return code;
        const qint64 found = StoredSearch(m_store, *search.condition, m_order).count()
                             + static_cast<qint64>(candidateHits(search).size());
        search.finds = found > 0;
        count += found;
    }
    return ReturnCode::Success;
}

} // namespace placesd
