// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ResultList.h"
#include "Search.h"

#include <functional>
#include <memory>

namespace tool
{

/// Searches that replace each other: a term in the groups of the options, or places of a category. Needs an event loop.
/// The destructor does not wait; the search threads end with the process.
class LiveSearch
{
public:
    /// @param answered called for each answer after the results are updated.
    LiveSearch(const SearchOptions &options, const std::function<void()> &answered);
    LiveSearch(const LiveSearch &) = delete;
    LiveSearch &operator=(const LiveSearch &) = delete;
    ~LiveSearch();

    void searchTerm(const QString &term);
    /// Searches for places of a category, nearest first when the options have a centre.
    void searchCategory(const QString &category);

    /// True while answers are outstanding.
    [[nodiscard]] bool isSearching() const { return m_isSearching; }
    /// The category of the search; empty during a search by term.
    [[nodiscard]] const QString &category() const { return m_category; }
    /// The category and the searched area, for people.
    [[nodiscard]] QString categoryTitle() const;
    /// The error text of the last group that failed; empty when none failed.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] ResultList &results() { return m_results; }
    [[nodiscard]] const ResultList &results() const { return m_results; }
    [[nodiscard]] const SearchOptions &options() const { return m_options; }

private:
    void start(const SearchOptions &options, const QString &term);

    const SearchOptions &m_options;
    std::unique_ptr<places::SearchManager> m_manager = std::make_unique<places::SearchManager>();
    ResultList m_results;
    QString m_category;
    int m_searchId = 0;
    bool m_isSearching = false;
};

} // namespace tool
