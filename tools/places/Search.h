// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <places/Coordinates.h>
#include <places/SearchManager.h>
#include <places/SearchResultGroup.h>

#include <QtCore/QList>
#include <QtCore/QString>

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
};

/// Starts the search for a term. It replaces the previous search.
void startSearch(places::SearchManager &manager, const SearchOptions &options, const QString &term, int searchId);

/// The places of a result; the result owns them.
formats::PlaceList placesOf(const places::SearchResult &result);

/// The title of a group, with the number of shown results when there are more.
QString titleOf(const places::SearchResult &result);

/// Searches and writes each group as it arrives; in JSON, all groups at the end. Failed when a group failed. A signal
/// ends the search at once.
ExitStatus search(const SearchOptions &options, Form form);

} // namespace tool
