// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/FindSql.h"
#include "sources/ContactBook.h"
#include "sources/Providers.h"
#include "store/Store.h"

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
    Cursor next;
};

/// Where places come from that are not stored.
struct PlaceSources
{
    const Providers &providers;
    ContactBook *contacts = nullptr; ///< Null where there are none.
};

/// Carries out one find. What is stored and what is not stand on the same pages: places that are not stored become
/// candidates, and one statement looks among both. Providers give theirs by batches, in an order of their own, so a
/// page may take several; the first batch comes with all that is found without the providers.
class Finder
{
public:
    Finder(Store &store, PlaceSources sources, Query query, bool external, Deadline deadline);

    /// Whether a provider has to be asked, or the contacts waited for.
    [[nodiscard]] bool takesLong() const;

    /// Code 66 when the query holds a number that has no meaning; the providers' code when nothing can be found without
    /// them and none answers.
    orix_places_protocol::ReturnCode find(Page &page);
    orix_places_protocol::ReturnCode count(int &count);

private:
    using ReturnCode = orix_places_protocol::ReturnCode;
    /// What a leaf asks the providers.
    struct Search
    {
        int source = Rule::NO_SOURCE;
        ProviderSearch search;
    };

    [[nodiscard]] bool asksProviders() const { return !m_searches.empty(); }
    [[nodiscard]] bool asksContacts(const Rule &leaf) const;
    /// Fetches what is found without the providers, but is not stored.
    ReturnCode fetchLocal();
    void takeLocal(const Rule &leaf, const std::vector<FoundPlace> &places);
    [[nodiscard]] std::vector<FoundPlace> searchTerms(const QString &prefix);
    [[nodiscard]] ProviderSearch searchFor(const Rule &leaf, SearchKind kind) const;
    [[nodiscard]] bool canBeBatched() const;
    [[nodiscard]] bool looksAtCandidates() const { return !m_local.empty() || !m_searches.empty(); }

    ReturnCode findStored(Page &page);
    ReturnCode findAmongAll(Page &page);
    /// Asks for a batch and puts it where the store looks, with what is found without the providers.
    ReturnCode fetch(int batch, int size);
    /// Adds to the page what the batch gives from a position on; true when the page is complete.
    bool takeBatch(Page &page, Cursor &cursor);

    Store &m_store;
    const PlaceSources m_from;
    Query m_query;
    const bool m_external;
    const Deadline m_deadline;
    std::vector<const Rule *> m_sources; ///< Leaves of the query's rule.
    std::vector<Candidate> m_local;
    std::vector<Search> m_searches;
    // The batch that was fetched last.
    std::vector<Candidate> m_candidates;
    bool m_hasMoreBatches = false;
};

} // namespace placesd
