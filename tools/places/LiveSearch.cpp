// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "LiveSearch.h"

#include <places/AbstractPlace.h>

namespace tool
{

using namespace places;

LiveSearch::LiveSearch(const SearchOptions &options, const std::function<void()> &answered)
    : m_options(options)
{
    QObject::connect(m_manager.get(), &SearchManager::resultAvailable, m_manager.get(),
                     [this, answered](Error::Type error, const SearchResult &result, bool last) {
                         m_results.take(error, result);
                         m_isSearching = !last;
                         answered();
                     });
}

LiveSearch::~LiveSearch()
{
    // Avoids the destructor, which would wait for outstanding answers.
    m_manager.release()->disconnect();
}

void LiveSearch::searchTerm(const QString &term)
{
    m_category.clear();
    start(m_options, term);
}

void LiveSearch::searchCategory(const QString &category)
{
    m_category = category;
    SearchOptions options = m_options;
    options.groups = {SearchResultGroup::Categories};
    start(options, category);
}

void LiveSearch::start(const SearchOptions &options, const QString &term)
{
    m_isSearching = true;
    m_results.startSearch(options.groups);
    startSearch(*m_manager, options, term, ++m_searchId);
}

QString LiveSearch::categoryTitle() const
{
    const Coordinates &centre = m_options.centre;
    return centre.isValid()
               ? QStringLiteral("%1 near %2,%3").arg(m_category).arg(centre.latitude()).arg(centre.longitude())
               : m_category;
}

QString LiveSearch::problem() const
{
    QString problem;
    for (const ResultList::Group &group : m_results.groups()) {
        if (group.isFresh && group.error != Error::Success)
            problem = textOf(group.error, group.result.reason());
    }
    return problem;
}

} // namespace tool
