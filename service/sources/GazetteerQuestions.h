// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/TierSearch.h"
#include "text/Wording.h"

/// What is asked of the gazetteer's index, as questions for a TierSearch. A question uses the connection as long as it
/// lives. Throws SQLite::Exception.
namespace placesd
{

/// What a search looks things up in.
struct GazetteerIndex
{
    SQLite::Database &database;
    const CorrectionSource &vocabulary; ///< All words of the full-text index.
};

/// The places that a search finds by a reading of its term. By relevance, those of just the name of the term come
/// first, then those that have it as a code or another name, those whose name starts with it, those whose name it
/// starts with, those whose names have its words, and the rest. A reading without words finds every place.
TierQuestion questionOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading);

/// The number of places that have the words of a reading, counted no further than `limit`.
int64_t countOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading, int limit);

/// The places of a category, nearest first.
TierQuestion questionOfKind(SQLite::Database &database, const QString &kind,
                            const vela::platform::places::Coordinates &centre);

/// The places of just this name, nearest first.
TierQuestion questionOfName(SQLite::Database &database, const QString &name,
                            const vela::platform::places::Coordinates &centre);

} // namespace placesd
