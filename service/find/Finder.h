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

/// Where a result was found, or a search goes on, among what the providers give.
struct Cursor
{
    int batch = -1;    ///< The number of the providers' batch; -1 where no provider takes part.
    int position = -1; ///< The position among the results that came with this batch.
};

/// One page of a find.
struct Page
{
    std::vector<std::string> records;
    std::vector<Cursor> cursors; ///< Of each record.
    bool hasMore = false;
    bool isFull = false; ///< Whether a record found no room.
    Cursor next;
    std::size_t room = limits::REPLY_SIZE; ///< Bytes that the page may still take in a reply.

    /// Adds a record and its cursor. False, and there is more behind the page, when they find no room.
    bool add(std::string record, const Cursor &cursor);
};

/// Where places come from that are not stored.
struct PlaceSources
{
    const Providers &providers;
    ContactBook *contacts = nullptr; ///< Null where there are none.
};

/// Carries out one find: one or several searches, one after the other until the page is full. What is stored and what
/// is not stand on the same pages, merged in order. Providers give their places by batches, in an order of their own,
/// so a page may take several; the first batch comes with all that is found without the providers.
class Finder
{
public:
    using ReturnCode = orix_places_protocol::ReturnCode;

    Finder(Store &store, PlaceSources sources, Query query, bool external, Deadline deadline, Plan plan = Plan::Best);

    /// Whether a provider has to be asked, or the contacts waited for.
    [[nodiscard]] bool takesLong() const;

    /// Code 66 when the query holds a number that has no meaning; the providers' code when nothing can be found without
    /// them and none answers; 64 when the page has no room for one record.
    Status find(Page &page);
    Status count(int &count);

private:
    /// What a leaf asks the providers.
    struct Ask
    {
        int source = Rule::NO_SOURCE;
        ProviderSearch search;
    };
    /// A search of its own: what no search before it finds.
    struct Search
    {
        const Rule *rule;
        ConditionPtr condition;
        bool takesCandidates = false;
        bool isFetched = false;         ///< Whether what is not stored, but found without the providers, was fetched.
        std::optional<bool> finds = {}; ///< Whether it finds anything; unset before that was looked for.
    };

    [[nodiscard]] bool asksProviders() const { return !m_asks.empty(); }
    [[nodiscard]] bool asksContacts() const;
    [[nodiscard]] bool asksContacts(const Rule &leaf) const;
    [[nodiscard]] ProviderSearch searchFor(const Rule &leaf, SearchKind kind) const;
    [[nodiscard]] bool canBeBatched() const;

    /// Runs `work` on the searches, and once more by another reading of the terms where no search by words found
    /// anything.
    ReturnCode runByReading(const std::function<ReturnCode()> &work);
    /// Whether a search by words found something, or no term has words.
    [[nodiscard]] bool isAnswered() const;
    /// Reads the terms in the first way in which a search by words finds anything.
    /// @param isFirstTried whether the first way is known to find nothing.
    ReturnCode chooseReadings(bool isFirstTried);
    void chooseReadingOf(const QString &term, bool isFirstTried, ReturnCode &code);
    void readAsTyped(bool inNames);
    void read(const QString &term, Reading reading);
    /// Whether a search by words finds anything by the readings that are set.
    bool findAnyByWords(ReturnCode &code);
    qint64 countWithWords(const QString &term, const Reading &reading, ReturnCode &code);

    /// Makes the searches for the first batch, or for one of those behind it.
    ReturnCode makeSearches(bool isFirstBatch);
    ReturnCode refuse(ReturnCode code, std::string reason);
    ConditionPtr conditionOf(RuleCompiler &compiler, const std::vector<const Rule *> &rules, std::size_t index,
                             bool isFirstBatch) const;
    /// Fetches what a rule finds that is not stored, without the providers.
    ReturnCode fetchLocal(const Rule &rule);
    ReturnCode fetchLocal(Search &search);
    std::vector<FoundPlace> localPlaces(const Rule &leaf, ReturnCode &code);

    ReturnCode findAny(Page &page);
    ReturnCode findWithoutProviders(Page &page);
    ReturnCode readForProviders();
    ReturnCode findByBatches(Page &page);
    /// Asks for a batch of the providers' places.
    ReturnCode ask(int batch, int size);
    /// Makes the searches for the batch, and candidates of all that was found for them.
    ReturnCode takeAnswers(int batch);
    /// Adds to the page what the batch gives from the cursor on, and moves the cursor behind it.
    ReturnCode takeBatch(Page &page, Cursor &cursor, bool &isComplete);

    /// The places at some positions of what all searches give, one search after the other.
    ReturnCode collect(std::size_t offset, std::size_t count, std::vector<qint64> &ids);
    std::vector<Hit> hitsOf(const Search &search, std::size_t wanted);
    std::vector<Hit> candidateHits(const Search &search) const;
    ReturnCode countWithoutProviders(qint64 &count);
    ReturnCode countWithProviders(qint64 &count);
    ReturnCode countAll(qint64 &count);
    /// The record of a place that was found, with the term that it was found by; empty, and a message in the log, for
    /// one that cannot be read.
    std::string recordOf(qint64 id);

    Store &m_store;
    const PlaceSources m_from;
    Query m_query;
    const bool m_external;
    const Deadline m_deadline;
    const Plan m_plan;
    const Order m_order;
    const QByteArray m_typedTerm; ///< UTF-8; what is found carries it.
    FindTerms m_terms;
    std::vector<const Rule *> m_sources; ///< Leaves of the query's rule.
    std::vector<Ask> m_asks;
    std::unique_ptr<Candidates> m_candidates; ///< Before the searches: their conditions look at it.
    std::vector<Search> m_searches;
    std::vector<ProvidersAnswer> m_answers; ///< To each of m_asks.
    bool m_hasMoreBatches = false;
    std::string m_reason; ///< Why the find failed, where its code leaves that open.
};

} // namespace placesd
