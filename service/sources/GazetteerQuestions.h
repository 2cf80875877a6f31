// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/TierSearch.h"
#include "text/Wording.h"

/// Searches of the gazetteer's index, as questions for a TierSearch. A question uses the connection during its
/// lifetime. Throws SQLite::Exception.
namespace placesd
{

/// The index and its vocabulary.
struct GazetteerIndex
{
    SQLite::Database &database;
    const CorrectionSource &vocabulary; ///< All words of the full-text index.
};

/// The places that match a reading of a term. By relevance: the name equals the term; a code or another name equals it;
/// the name starts with it; it starts with the name; names contain its words; all others. A reading without words
/// matches every place.
TierQuestion questionOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading);

/// Number of places that contain the words of a reading, counted up to `limit`.
int64_t countOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading, int limit);

/// The places of a category, nearest first.
TierQuestion questionOfKind(SQLite::Database &database, const QString &kind,
                            const vela::platform::places::Coordinates &centre);

/// The places with exactly this name, nearest first.
TierQuestion questionOfName(SQLite::Database &database, const QString &name,
                            const vela::platform::places::Coordinates &centre);

} // namespace placesd
