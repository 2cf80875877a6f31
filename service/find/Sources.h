// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"
#include "sources/PlaceProvider.h"

#include <optional>
#include <vector>

/// The parts of a search rule that find places which are not stored, and where those come from.
namespace placesd
{

/// What a leaf asks for, besides stored places or in their stead.
enum class SourceKind
{
    None, ///< Stored places only.
    Provider,
    Contacts,
    MeetingRooms,
    SearchTerms
};

SourceKind sourceKindOf(const Rule &rule);

/// What a leaf wants of the providers; unset when it wants nothing of them.
std::optional<SearchKind> providerSearchOf(const Rule &rule);

/// Gives a number to every leaf of a rule that finds what is not stored, and returns these leaves, each at the place of
/// its number.
std::vector<const Rule *> numberSources(Rule &rule);

/// Whether the rule, or one of its members, finds what is not stored.
bool hasSource(const Rule &rule);

/// A connective at the top whose members are searches of their own: "and" puts their results one after the other, "or"
/// merges them.
bool joinsSearches(const Rule &rule);

/// Whether a rule is a leaf that looks for places by the words of a term.
bool isByWords(const Rule &rule);
/// Whether the rule is such a leaf, or has one.
bool hasWords(const Rule &rule);

/// What the user typed, which all leaves search for that take such a text; empty when they differ or there are none.
QString typedTerm(const Rule &rule);

/// Whether the rule, or one of its members, asks the providers.
bool asksProviders(const Rule &rule);

/// True when nothing is found without the providers.
bool needsProviders(const Rule &rule);

} // namespace placesd
