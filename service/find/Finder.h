// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "find/Candidates.h"
#include "find/Order.h"
#include "find/RuleCompiler.h"
#include "find/StoredSearch.h"
#include "Limits.h"
#include "sources/ContactBook.h"
#include "sources/Providers.h"
#include "Status.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace placesd
{

/// Position of a result, or of the next one, in the batches of the providers.
struct Cursor
{
    int batch = -1;    ///< Number of the batch; -1 when no provider takes part.
    int position = -1; ///< Position among the results of this batch.
};

/// One page of a find.
struct Page
{
    std::vector<std::string> records;
    std::vector<Cursor> cursors; ///< One per record.
    bool hasMore = false;
    bool isFull = false; ///< Whether a record did not fit.
    Cursor next;
    std::size_t room = limits::REPLY_SIZE; ///< Bytes that are left for the page in the reply.

    /// Adds a record and its cursor. False when they do not fit; the page then has more results.
    bool add(std::string record, const Cursor &cursor);
};

/// Sources of places other than the store.
struct PlaceSources
{
    const Providers &providers;
    ContactBook *contacts = nullptr; ///< Null when there are no contacts.
};

/// Runs one find: one or more searches, one after the other until the page is full. A page contains stored places and
/// places of other sources, merged in order. Providers give places in batches in their own order, so a page may need
/// several batches; the first batch includes all results of other sources.
class Finder
{
public:
    using ReturnCode = orix_places_protocol::ReturnCode;

    Finder(Store &store, PlaceSources sources, Query query, bool external, Deadline deadline, Plan plan = Plan::Best);

    /// Whether it asks a provider or waits for the contacts.
    [[nodiscard]] bool needsSlowPool() const;

    /// Fails with code 66 for a number without a meaning; with the providers' code when they are needed and none
    /// answers; with code 64 when not even one record fits the page.
    Status find(Page &page);
    Status count(int &count);

private:
    /// A provider search for a leaf.
    struct Ask
    {
        int source = Rule::NO_SOURCE;
        ProviderSearch search;
    };
    /// One of the searches; it leaves out results of the searches before it.
    struct Search
    {
        const Rule *rule;
        ConditionPtr condition;
        bool takesCandidates = false;
        bool isFetched = false;         ///< Whether the places of sources other than the store and the providers are
                                        ///< fetched.
        std::optional<bool> finds = {}; ///< Whether it finds anything; unset while unknown.
    };

    [[nodiscard]] bool asksProviders() const { return !m_asks.empty(); }
    [[nodiscard]] bool asksContacts() const;
    [[nodiscard]] bool asksContacts(const Rule &leaf) const;
    [[nodiscard]] ProviderSearch searchFor(const Rule &leaf, SearchKind kind) const;
    [[nodiscard]] bool canBeBatched() const;

    /// Runs `work` on the searches. When no search by words finds anything, chooses another reading of the terms and
    /// runs `work` again.
    ReturnCode runByReading(const std::function<ReturnCode()> &work);
    /// Whether a search by words found something, or no term has words.
    [[nodiscard]] bool isAnswered() const;
    /// Chooses the first reading of the terms by which a search by words finds anything.
    /// @param isFirstTried whether the first reading is known to find nothing.
    ReturnCode chooseReadings(bool isFirstTried);
    void chooseReadingOf(const QString &term, bool isFirstTried, ReturnCode &code);
    void readAsTyped(bool inNames);
    void read(const QString &term, Reading reading);
    /// Whether a search by words finds anything by the current readings.
    bool findAnyByWords(ReturnCode &code);
    qint64 countWithWords(const QString &term, const Reading &reading, ReturnCode &code);

    /// Creates the searches for the first or a later batch.
    ReturnCode makeSearches(bool isFirstBatch);
    ReturnCode refuse(ReturnCode code, std::string reason);
    ConditionPtr conditionOf(RuleCompiler &compiler, const std::vector<const Rule *> &rules, std::size_t index,
                             bool isFirstBatch) const;
    /// Fetches places for a rule from sources other than the store and the providers.
    ReturnCode fetchLocal(const Rule &rule);
    ReturnCode fetchLocal(Search &search);
    std::vector<FoundPlace> localPlaces(const Rule &leaf, ReturnCode &code);

    ReturnCode findAny(Page &page);
    ReturnCode findWithoutProviders(Page &page);
    ReturnCode readForProviders();
    ReturnCode findByBatches(Page &page);
    /// Requests a batch of places from the providers.
    ReturnCode ask(int batch, int size);
    /// Creates the searches for the batch and candidates from all its answers.
    ReturnCode takeAnswers(int batch);
    /// Adds the results of the batch from the cursor on to the page and advances the cursor.
    ReturnCode takeBatch(Page &page, Cursor &cursor, bool &isComplete);

    /// The places at a range of positions in the results of all searches.
    ReturnCode collect(std::size_t offset, std::size_t count, std::vector<qint64> &ids);
    std::vector<Hit> hitsOf(const Search &search, std::size_t wanted);
    std::vector<Hit> candidateHits(const Search &search) const;
    ReturnCode countWithoutProviders(qint64 &count);
    ReturnCode countWithProviders(qint64 &count);
    ReturnCode countAll(qint64 &count);
    /// The record of a place, with the typed term; empty, with a log message, when it cannot be read.
    std::string recordOf(qint64 id);

    Store &m_store;
    const PlaceSources m_from;
    Query m_query;
    const bool m_external;
    const Deadline m_deadline;
    const Plan m_plan;
    const Order m_order;
    const QByteArray m_typedTerm; ///< UTF-8; added to the found places.
    FindTerms m_terms;
    std::vector<const Rule *> m_sources; ///< Leaves of the query's rule that search other sources.
    std::vector<Ask> m_asks;
    std::unique_ptr<Candidates> m_candidates; ///< Declared before the searches, whose conditions use it.
    std::vector<Search> m_searches;
    std::vector<ProvidersAnswer> m_answers; ///< One for each of m_asks.
    bool m_hasMoreBatches = false;
    std::string m_reason; ///< Reason of a failure; empty when the code is clear by itself.
};

} // namespace placesd
