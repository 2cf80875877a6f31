// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Commands.h"
#include "Report.h"

#include <places/Coordinates.h>
#include <places/SearchManager.h>
#include <places/SearchResultGroup.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <vector>

namespace tool
{

/// Arguments of a search.
struct SearchOptions
{
    QString term;
    places::Coordinates centre;
    QList<places::SearchResultGroup::Type> groups; ///< Without duplicates, all from the table of groups.
    int limit = 20;
    bool withoutFavorites = false;
    std::optional<PlaceTemplate> row = {}; ///< Form of the rows.
    std::vector<int> saved = {};           ///< Numbers of the results to be stored, as printed; empty to print them.
};

/// Starts the search for a term. It replaces the previous search.
void startSearch(places::SearchManager &manager, const SearchOptions &options, const QString &term, int searchId);

/// The places of a result; the result owns them.
formats::PlaceList placesOf(const places::SearchResult &result);

/// The title of a group, with the number of shown results when there are more.
QString titleOf(const places::SearchResult &result);

/// Searches and writes each group when it arrives, in the order of the options; in JSON, all groups at the end. The
/// results of all groups are numbered from 1. Failed when a group failed. A signal ends the search at once.
ExitStatus search(const SearchOptions &options, const Context &context);

} // namespace tool
