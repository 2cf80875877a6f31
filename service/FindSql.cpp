// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FindSql.h"

#include "places/SearchOperator.h"
#include "places/SortRule.h"
#include "places/Tags.h"
#include "search/SearchRulePrivate.h"
#include "TextKeys.h"

#include <algorithm>

namespace placesd
{

using orix_places_protocol::SearchRuleKind;
using orix_places_protocol::SortRuleKind;
using vela::platform::places::SearchOperator;
using vela::platform::places::SortField;
using vela::platform::places::SortOrder;
using Field = vela::platform::places::SearchRulePrivate::Field;
namespace Tags = vela::platform::places::Tags;

namespace
{

constexpr char NOTHING[] = "0";
constexpr char EVERYTHING[] = "1";
constexpr char OF_A_CONTACT[] = "p.id IN (SELECT place FROM auxiliary WHERE type = 'contact')";

bool isDisjoint(const Rule &rule)
{
    return rule.kind == SearchRuleKind::Disjoint;
}

bool isConnective(const Rule &rule)
{
    return rule.kind == SearchRuleKind::And || rule.kind == SearchRuleKind::Or;
}

/// A connective whose members are searches of their own.
bool joinsSearches(const Rule &rule)
{
    return isConnective(rule) && !rule.members.empty()
           && std::all_of(rule.members.begin(), rule.members.end(), isDisjoint);
}

/// A term for the full-text index: the beginnings of words, all of which must occur.
QString matchExpression(const QStringList &words)
{
    QStringList starts;
    for (const QString &word : words)
        starts.append(QLatin1Char('"') + word + QLatin1String("\"*"));
    return starts.join(QLatin1Char(' '));
}

const char *direction(int order)
{
    return order == SortOrder::Descending ? " DESC" : " ASC";
}

} // namespace

FindSql::FindSql(const Query &query, bool external)
    : m_external(external)
    , m_headerOnly(query.headerOnly)
    , m_condition(topCondition(query.rule))
    , m_order(sortTerms(query.sort))
{}

std::string FindSql::selectPage() const
{
    const std::string rank = m_rank.empty() ? "" : m_rank + ", ";
    return std::string("SELECT ") + (m_headerOnly ? "p.header" : "p.full_record") + " FROM place p WHERE " + m_condition
           + " ORDER BY " + rank + m_order + "p.id ASC LIMIT ? OFFSET ?";
}

std::string FindSql::selectCount() const
{
    return "SELECT count(*) FROM place p WHERE " + m_condition;
}

std::string FindSql::bind(const QVariant &value)
{
    m_bindings.push_back(value);
    return "?" + std::to_string(m_bindings.size());
}

std::string FindSql::notUnderstood()
{
    m_understood = false;
    return NOTHING;
}

/// Searches of their own put their results one after the other under AND and merge them under OR; a place that several
/// of them find stands where the first one has it.
std::string FindSql::topCondition(const Rule &rule)
{
    if (!joinsSearches(rule))
        return condition(rule);
    std::string all;
    std::string cases;
    for (std::size_t i = 0; i < rule.members.size(); ++i) {
        const std::string member = condition(rule.members[i]);
        all += (i > 0 ? " OR (" : "(") + member + ")";
        cases += " WHEN (" + member + ") THEN " + std::to_string(i);
    }
    if (rule.kind == SearchRuleKind::And && rule.members.size() > 1)
        m_rank = "CASE" + cases + " END";
    return "(" + all + ")";
}

std::string FindSql::condition(const Rule &rule)
{
    switch (rule.kind) {
    case SearchRuleKind::Abstract:
        return EVERYTHING;
    case SearchRuleKind::And:
    case SearchRuleKind::Disjoint:
        return connective(rule, " AND ", EVERYTHING);
    case SearchRuleKind::Or:
        return connective(rule, " OR ", NOTHING);
    case SearchRuleKind::Nullary:
    case SearchRuleKind::UnaryInt:
    case SearchRuleKind::UnaryString:
        return leaf(rule);
    }
    return notUnderstood();
}

std::string FindSql::connective(const Rule &rule, const char *link, const char *ofNone)
{
    // Pairs of an auxiliary key and value are about one and the same property.
    if (rule.kind == SearchRuleKind::And && rule.members.size() == 2 && rule.members[0].field == Field::AuxiliaryKey
        && rule.members[1].field == Field::AuxiliaryValue) {
        return "p.id IN (SELECT place FROM property WHERE "
               + foldedText("key", rule.members[0].op, rule.members[0].text) + " AND "
               + foldedText("value", rule.members[1].op, rule.members[1].text) + ")";
    }
    std::string joined;
    for (const Rule &member : rule.members)
        joined += (joined.empty() ? "(" : link + std::string("(")) + condition(member) + ")";
    return joined.empty() ? ofNone : joined;
}

std::string FindSql::leaf(const Rule &rule)
{
    switch (rule.field) {
    case Field::AuxiliaryKey:
        return "p.id IN (SELECT place FROM property WHERE " + foldedText("key", rule.op, rule.text) + ")";
    case Field::AuxiliaryValue:
        return "p.id IN (SELECT place FROM property WHERE " + foldedText("value", rule.op, rule.text) + ")";
    case Field::LastUsedTime:
        return number("p.last_used", rule.op, rule.value);
    case Field::Name:
        return nameCondition(rule.op, rule.text);
    case Field::Owner:
    case Field::MyPlaces:
        return exactText("p.owner", rule.op, rule.text);
    case Field::Tag:
        if (rule.op == SearchOperator::NotEqual)
            return "p.id NOT IN (SELECT place FROM tag WHERE tag = " + bind(rule.text) + ")";
        return "p.id IN (SELECT place FROM tag WHERE " + exactText("tag", rule.op, rule.text) + ")";
    case Field::Type:
        if (rule.op == SearchOperator::NotEqual)
            return "p.id NOT IN (SELECT place FROM auxiliary WHERE type = " + bind(rule.text) + ")";
        return "p.id IN (SELECT place FROM auxiliary WHERE " + exactText("type", rule.op, rule.text) + ")";
    case Field::RecentlyPicked:
        return m_external ? NOTHING : "p.mask & 1";
    case Field::ExcludeFavorites:
        return "p.id NOT IN (SELECT place FROM tag WHERE tag = " + bind(Tags::Favorite) + ")";
    case Field::ListFavorite:
        return "p.id IN (SELECT place FROM tag WHERE tag = " + bind(Tags::Favorite) + ")";
    case Field::ContactQuery:
        if (m_external)
            return NOTHING;
        return std::string(OF_A_CONTACT) + " AND " + nameCondition(SearchOperator::Contains, rule.text);
    case Field::NonContact:
        return "NOT " + std::string(OF_A_CONTACT);
    case Field::RecentSearchTerms:
    case Field::GeocodeAddress:
    case Field::POIName:
    case Field::Suggestion:
    case Field::POICategory:
    case Field::POICategorySuggestion:
    case Field::MeetingRoom:
    case Field::RemoteByName:
    case Field::RemoteByCategoryOrName:
        // None of these is a stored place.
        return NOTHING;
    default:
        return notUnderstood();
    }
}

std::string FindSql::nameCondition(int op, const QString &term)
{
    if (op != SearchOperator::Contains)
        return foldedText("p.name_key", op, term);
    if (term.isEmpty())
        return EVERYTHING;
    const QStringList starts = words(searchKey(term));
    if (starts.isEmpty())
        return foldedText("p.name_key", op, term);
    return "p.id IN (SELECT rowid FROM name_index WHERE name_index MATCH " + bind(matchExpression(starts)) + ")";
}

std::string FindSql::foldedText(const std::string &column, int op, const QString &term)
{
    return text(column, op, searchKey(term));
}

std::string FindSql::exactText(const std::string &column, int op, const QString &term)
{
    return text(column, op, term);
}

std::string FindSql::text(const std::string &column, int op, const QString &term)
{
    const std::string value = bind(term);
    switch (op) {
    case SearchOperator::Equals:
        return column + " = " + value;
    case SearchOperator::NotEqual:
        return column + " <> " + value;
    case SearchOperator::GreaterOrEqual:
        return column + " >= " + value;
    case SearchOperator::LessOrEqual:
        return column + " <= " + value;
    case SearchOperator::StartsWith:
        return "substr(" + column + ", 1, length(" + value + ")) = " + value;
    case SearchOperator::Contains:
        return "contains_words(" + column + ", " + value + ")";
    case SearchOperator::EndsWith:
        return "(length(" + value + ") = 0 OR substr(" + column + ", -length(" + value + ")) = " + value + ")";
    default:
        return notUnderstood();
    }
}

std::string FindSql::number(const std::string &column, int op, int value)
{
    // A time is an unsigned number in the place of a signed one.
    const std::string bound = bind(static_cast<qlonglong>(static_cast<unsigned int>(value)));
    switch (op) {
    case SearchOperator::Equals:
        return column + " = " + bound;
    case SearchOperator::NotEqual:
        return column + " <> " + bound;
    case SearchOperator::GreaterOrEqual:
        return column + " >= " + bound;
    case SearchOperator::LessOrEqual:
        return column + " <= " + bound;
    default:
        return notUnderstood();
    }
}

/// The terms of an ORDER BY, each with a comma behind it.
std::string FindSql::sortTerms(const Sort &sort)
{
    const std::string by = direction(sort.order);
    switch (sort.kind) {
    case SortRuleKind::Abstract:
        return {};
    case SortRuleKind::Combined: {
        std::string terms;
        for (const Sort &member : sort.members)
            terms += sortTerms(member);
        return terms;
    }
    case SortRuleKind::Distance:
        m_sortBindings.emplace_back(sort.latitude);
        m_sortBindings.emplace_back(sort.longitude);
        return "distance(p.latitude, p.longitude, ?, ?)" + by + " NULLS LAST, ";
    case SortRuleKind::Simple:
        switch (sort.field) {
        case SortField::Relevance:
            return "p.usage_count" + by + ", p.last_used" + by + ", ";
        case SortField::Name:
            return "p.sort_key" + by + ", ";
        case SortField::LastUsedTime:
            return "p.last_used" + by + ", ";
        case SortField::CreationTime:
            return "p.created" + by + ", ";
        case SortField::UpdateTime:
            return "p.updated" + by + ", ";
        case SortField::UsageCount:
            return "p.usage_count" + by + ", ";
        default:
            break;
        }
    }
    notUnderstood();
    return {};
}

} // namespace placesd
