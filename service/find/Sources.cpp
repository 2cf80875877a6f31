// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Sources.h"

#include "places/SearchOperator.h"
#include "search/SearchRulePrivate.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace placesd
{

using orix_places_protocol::SearchRuleKind;
using vela::platform::places::SearchOperator;
using Field = vela::platform::places::SearchRulePrivate::Field;

namespace
{

bool isLeaf(const Rule &rule)
{
    return rule.kind == SearchRuleKind::Nullary || rule.kind == SearchRuleKind::UnaryInt
           || rule.kind == SearchRuleKind::UnaryString;
}

void numberSources(Rule &rule, std::vector<const Rule *> &sources)
{
    if (sourceKindOf(rule) != SourceKind::None) {
        rule.source = static_cast<int>(sources.size());
        sources.push_back(&rule);
    }
    for (Rule &member : rule.members)
        numberSources(member, sources);
}

} // namespace

std::optional<SearchKind> providerSearchOf(const Rule &rule)
{
    if (!isLeaf(rule))
        return {};
    switch (rule.field) {
    case Field::GeocodeAddress:
        return SearchKind::Address;
    case Field::POIName:
    case Field::RemoteByName:
        return SearchKind::Name;
    case Field::Suggestion:
        return SearchKind::Suggestion;
    case Field::POICategory:
        return SearchKind::Category;
    case Field::POICategorySuggestion:
        return SearchKind::CategorySuggestion;
    case Field::RemoteByCategoryOrName:
        return SearchKind::CategoryOrName;
    default:
        return {};
    }
}

SourceKind sourceKindOf(const Rule &rule)
{
    if (!isLeaf(rule))
        return SourceKind::None;
    if (providerSearchOf(rule))
        return SourceKind::Provider;
    if (rule.field == Field::ContactQuery)
        return SourceKind::Contacts;
    if (rule.field == Field::MeetingRoom)
        return SourceKind::MeetingRooms;
    return rule.field == Field::RecentSearchTerms ? SourceKind::SearchTerms : SourceKind::None;
}

std::vector<const Rule *> numberSources(Rule &rule)
{
    std::vector<const Rule *> sources;
    numberSources(rule, sources);
    return sources;
}

bool hasSource(const Rule &rule)
{
    return rule.source != Rule::NO_SOURCE || std::any_of(rule.members.begin(), rule.members.end(), hasSource);
}

bool joinsSearches(const Rule &rule)
{
    return (rule.kind == SearchRuleKind::And || rule.kind == SearchRuleKind::Or) && !rule.members.empty()
           && std::all_of(rule.members.begin(), rule.members.end(),
                          [](const Rule &member) { return member.kind == SearchRuleKind::Disjoint; });
}

bool isByWords(const Rule &rule)
{
    const SourceKind kind = sourceKindOf(rule);
    const bool isName = isLeaf(rule) && rule.field == Field::Name && rule.op == SearchOperator::Contains;
    return isName || kind == SourceKind::Contacts || kind == SourceKind::MeetingRooms;
}

bool hasWords(const Rule &rule)
{
    return isByWords(rule) || std::any_of(rule.members.begin(), rule.members.end(), hasWords);
}

namespace
{

/// Categories are left out: users choose them instead of typing them.
void addTypedTerms(const Rule &rule, QStringList &terms)
{
    const bool isTyped = isByWords(rule) || (providerSearchOf(rule) && rule.field != Field::POICategory);
    if (isTyped && !rule.text.trimmed().isEmpty())
        terms.append(rule.text);
    for (const Rule &member : rule.members)
        addTypedTerms(member, terms);
}

} // namespace

QString typedTerm(const Rule &rule)
{
    QStringList terms;
    addTypedTerms(rule, terms);
    terms.removeDuplicates();
    return terms.size() == 1 ? terms.first() : QString();
}

bool asksProviders(const Rule &rule)
{
    return providerSearchOf(rule) || std::any_of(rule.members.begin(), rule.members.end(), asksProviders);
}

bool needsProviders(const Rule &rule)
{
    const auto &members = rule.members;
    if (isLeaf(rule))
        return providerSearchOf(rule).has_value();
    if (members.empty())
        return false;
    if (rule.kind == SearchRuleKind::Or || joinsSearches(rule))
        return std::all_of(members.begin(), members.end(), needsProviders);
    return std::any_of(members.begin(), members.end(), needsProviders);
}

} // namespace placesd
