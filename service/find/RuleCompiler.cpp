// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/RuleCompiler.h"

#include "find/Leaves.h"
#include "find/Sources.h"
#include "places/AuxiliaryData.h"
#include "places/SearchOperator.h"
#include "places/Tags.h"
#include "search/SearchRulePrivate.h"
#include "store/Store.h"

#include <limits>

namespace placesd
{

using orix_places_protocol::SearchRuleKind;
using vela::platform::places::AuxiliaryData;
using vela::platform::places::SearchOperator;
using Field = vela::platform::places::SearchRulePrivate::Field;
namespace Tags = vela::platform::places::Tags;

namespace
{

template <typename... Members>
Conditions list(Members... members)
{
    Conditions conditions;
    (conditions.push_back(std::move(members)), ...);
    return conditions;
}

} // namespace

ConditionPtr RuleCompiler::notUnderstood()
{
    m_isUnderstood = false;
    return nothing();
}

ConditionPtr RuleCompiler::compileWithoutProviders(const Rule &rule)
{
    m_withoutProviders = true;
    ConditionPtr condition = compileSearch(rule);
    m_withoutProviders = false;
    return condition;
}

ConditionPtr RuleCompiler::compileSearch(const Rule &rule)
{
    if (joinsSearches(rule)) {
        Conditions searches;
        for (const Rule &member : rule.members)
            searches.push_back(compileSearch(member));
        return std::make_unique<AnyOf>(std::move(searches));
    }
    std::vector<int> sources;
    addSources(rule, sources);
    return std::make_unique<AllOf>(
        list(compile(rule), ConditionPtr(new OwnCondition(m_candidates, std::move(sources)))));
}

/// Collects the numbers of the leaves that search other sources.
void RuleCompiler::addSources(const Rule &rule, std::vector<int> &sources) const
{
    const bool isLeftOut = m_withoutProviders && sourceKindOf(rule) == SourceKind::Provider;
    if (rule.source != Rule::NO_SOURCE && !isLeftOut)
        sources.push_back(rule.source);
    for (const Rule &member : rule.members)
        addSources(member, sources);
}

ConditionPtr RuleCompiler::compile(const Rule &rule)
{
    switch (rule.kind) {
    case SearchRuleKind::Abstract:
        return everything();
    case SearchRuleKind::And:
    case SearchRuleKind::Disjoint:
    case SearchRuleKind::Or:
        return connective(rule);
    case SearchRuleKind::Nullary:
    case SearchRuleKind::UnaryInt:
    case SearchRuleKind::UnaryString:
        return leaf(rule);
    }
    return notUnderstood();
}

ConditionPtr RuleCompiler::connective(const Rule &rule)
{
    // An auxiliary key and value in a pair refer to the same property.
    if (rule.kind == SearchRuleKind::And && rule.members.size() == 2 && rule.members[0].field == Field::AuxiliaryKey
        && rule.members[1].field == Field::AuxiliaryValue)
        return property(&rule.members[0], &rule.members[1]);
    Conditions members;
    for (const Rule &member : rule.members)
        members.push_back(compile(member));
    if (members.size() == 1)
        return std::move(members.front());
    if (rule.kind == SearchRuleKind::Or)
        return std::make_unique<AnyOf>(std::move(members));
    return std::make_unique<AllOf>(std::move(members));
}

ConditionPtr RuleCompiler::leaf(const Rule &rule)
{
    switch (rule.field) {
    case Field::AuxiliaryKey:
        return property(&rule, nullptr);
    case Field::AuxiliaryValue:
        return property(nullptr, &rule);
    case Field::LastUsedTime:
        return use(rule.op, rule.value);
    case Field::Name:
        return name(rule.op, rule.text);
    case Field::Owner:
    case Field::MyPlaces:
        return facet(FacetKind::Owner, rule.op, rule.text);
    case Field::Tag:
        return part(FacetKind::Tag, rule);
    case Field::Type:
        return part(FacetKind::Type, rule);
    case Field::RecentlyPicked:
        return m_external ? nothing() : std::make_unique<BucketCondition>();
    case Field::ExcludeFavorites:
        return std::make_unique<Not>(favorite());
    case Field::ListFavorite:
        return favorite();
    case Field::NonContact:
        return std::make_unique<Not>(facet(FacetKind::Type, SearchOperator::Equals, AuxiliaryData::TypeContact));
    default:
        return rule.source == Rule::NO_SOURCE ? notUnderstood() : sourceLeaf(rule);
    }
}

/// A leaf for another source also finds the stored place that equals a result. Contacts and meeting rooms are searched
/// in the owner's stored places too, but not in places that other applications added.
ConditionPtr RuleCompiler::sourceLeaf(const Rule &rule)
{
    const SourceKind kind = sourceKindOf(rule);
    if (m_external && kind != SourceKind::Provider)
        return nothing();
    const bool isLeftOut = m_withoutProviders && kind == SourceKind::Provider;
    ConditionPtr found = isLeftOut ? nothing() : std::make_unique<FoundCondition>(m_candidates, rule.source);
    if (kind == SourceKind::Provider || kind == SourceKind::SearchTerms)
        return found;
    ConditionPtr ofKind = kind == SourceKind::Contacts
                              ? facet(FacetKind::Type, SearchOperator::Equals, AuxiliaryData::TypeContact)
                              : facet(FacetKind::Quality, SearchOperator::Equals, QLatin1String(ROOM));
    ConditionPtr stored = std::make_unique<AllOf>(
        list(ConditionPtr(new OwnersCondition(m_store)), name(SearchOperator::Contains, rule.text), std::move(ofKind)));
    return std::make_unique<AnyOf>(list(std::move(stored), std::move(found)));
}

/// Cached: a rule has few facets, but each search repeats the facets of the searches whose results it leaves out.
std::shared_ptr<const std::vector<qint64>> RuleCompiler::numbersOf(FacetKind kind, const TextTest &text)
{
    auto &numbers = m_numbers[{kind, text.op(), text.term()}];
    if (!numbers)
        numbers = std::make_shared<const std::vector<qint64>>(m_store.facets().find(kind, text));
    return numbers;
}

ConditionPtr RuleCompiler::facet(FacetKind kind, int op, const QString &text)
{
    FacetTest test{kind, TextTest(op, text), {}};
    if (!test.text.isUnderstood())
        return notUnderstood();
    test.numbers = numbersOf(kind, test.text);
    return std::make_unique<FacetCondition>(std::move(test));
}

/// A place has several tags and types; "not equal" means that none of them is equal.
ConditionPtr RuleCompiler::part(FacetKind kind, const Rule &rule)
{
    if (rule.op == SearchOperator::NotEqual)
        return std::make_unique<Not>(facet(kind, SearchOperator::Equals, rule.text));
    return facet(kind, rule.op, rule.text);
}

/// Only stored places are favourites; the tags of other places do not count.
ConditionPtr RuleCompiler::favorite()
{
    return std::make_unique<AllOf>(
        list(facet(FacetKind::Tag, SearchOperator::Equals, Tags::Favorite), ConditionPtr(new StoredCondition)));
}

ConditionPtr RuleCompiler::property(const Rule *key, const Rule *value)
{
    PropertyTest test;
    if (key)
        test.key.emplace(key->op, searchKey(key->text));
    if (value)
        test.value.emplace(value->op, searchKey(value->text));
    if ((key && !test.key->isUnderstood()) || (value && !test.value->isUnderstood()))
        return notUnderstood();
    const TextTest any(SearchOperator::StartsWith, QString());
    return std::make_unique<PropertyCondition>(test, numbersOf(FacetKind::PropertyKey, key ? *test.key : any));
}

ConditionPtr RuleCompiler::use(int op, int time)
{
    // A time is unsigned but sent as a signed number.
    const auto at = static_cast<qint64>(static_cast<unsigned int>(time));
    constexpr qint64 FIRST = std::numeric_limits<qint64>::min();
    constexpr qint64 LAST = std::numeric_limits<qint64>::max();
    switch (op) {
    case SearchOperator::Equals:
        return std::make_unique<UseCondition>(at, at);
    case SearchOperator::NotEqual:
        return std::make_unique<Not>(std::make_unique<UseCondition>(at, at));
    case SearchOperator::GreaterOrEqual:
        return std::make_unique<UseCondition>(at, LAST);
    case SearchOperator::LessOrEqual:
        return std::make_unique<UseCondition>(FIRST, at);
    default:
        return notUnderstood();
    }
}

ConditionPtr RuleCompiler::name(int op, const QString &term)
{
    if (op == SearchOperator::Contains)
        return term.isEmpty() ? everything() : std::make_unique<WordsCondition>(m_terms.at(term));
    auto condition = std::make_unique<NameCondition>(op, term);
    return TextTest(op, {}).isUnderstood() ? ConditionPtr(std::move(condition)) : notUnderstood();
}

} // namespace placesd
