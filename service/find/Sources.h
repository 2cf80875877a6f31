// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"
#include "sources/PlaceProvider.h"

#include <optional>
#include <vector>

/// Parts of a search rule that search sources other than the store.
namespace placesd
{

/// The source that a leaf searches, in addition to stored places or instead of them.
enum class SourceKind
{
    None, ///< Stored places only.
    Provider,
    Contacts,
    MeetingRooms,
    SearchTerms
};

SourceKind sourceKindOf(const Rule &rule);

/// The provider search for a leaf; unset when the leaf does not use providers.
std::optional<SearchKind> providerSearchOf(const Rule &rule);

/// Numbers all leaves of a rule that search other sources, and returns them by number.
std::vector<const Rule *> numberSources(Rule &rule);

/// Whether the rule or one of its members searches another source.
bool hasSource(const Rule &rule);

/// Whether the top of a rule joins independent searches: "and" concatenates their results, "or" merges them.
bool joinsSearches(const Rule &rule);

/// Whether a rule is a leaf that searches by the words of a term.
bool isByWords(const Rule &rule);
/// Whether the rule is such a leaf or contains one.
bool hasWords(const Rule &rule);

/// The typed text that all text leaves search for; empty when they differ or there are none.
QString typedTerm(const Rule &rule);

/// Whether the rule or one of its members uses the providers.
bool asksProviders(const Rule &rule);

/// True when nothing can be found without the providers.
bool needsProviders(const Rule &rule);

} // namespace placesd
