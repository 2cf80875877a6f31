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

/// What is searched for.
struct SearchOptions
{
    QString term;
    places::Coordinates centre;
    QList<places::SearchResultGroup::Type> groups; ///< Each once, and in the table of groups.
    int limit = 20;
    bool withoutFavorites = false;
};

/// Starts the search of a term in place of the one before.
void startSearch(places::SearchManager &manager, const SearchOptions &options, const QString &term, int searchId);

/// The places of a result, which owns them.
formats::PlaceList placesOf(const places::SearchResult &result);

/// The title of a group, and how many of its results there are to be seen when it has more.
QString titleOf(const places::SearchResult &result);

/// Searches, and writes each group as it arrives; as JSON all of them at the end. Failed when a group was. A signal
/// ends it at once, whatever the service still owes.
ExitStatus search(const SearchOptions &options, Form form);

} // namespace tool
