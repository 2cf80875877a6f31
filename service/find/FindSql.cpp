// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/FindSql.h"

#include "find/Sources.h"
#include "model/PlacePrivate.h"
#include "places/SearchOperator.h"
#include "places/SortRule.h"
#include "places/Tags.h"
#include "search/SearchRulePrivate.h"
#include "store/SqlFunctions.h"
#include "store/TextKeys.h"

namespace placesd
{

using orix_places_protocol::SearchRuleKind;
using orix_places_protocol::SortRuleKind;
using vela::platform::places::PlacePrivate;
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
/// A contact or an appointment that says of itself that it is a room.
constexpr char IS_A_ROOM[] =
    "p.id IN (SELECT property.place FROM property JOIN auxiliary ON auxiliary.id = property.auxiliary"
    " WHERE key = 'kind' AND value = 'room' AND type IN ('contact', 'calendar'))";
/// What both stored places and candidates are sorted by.
constexpr char COLUMNS[] =
    "p.id, p.sort_key, p.usage_count, p.last_used, p.created, p.updated, p.latitude, p.longitude";

const char *direction(int order)
{
    return order == SortOrder::Descending ? " DESC" : " ASC";
}

} // namespace

FindSql::FindSql(const Query &query, bool external, Scope scope)
    : m_external(external)
    , m_headerOnly(query.headerOnly)
    , m_scope(scope)
{
    m_condition = rankedCondition(query.rule, Among::StoredPlaces, m_rank);
    if (scope != Scope::Stored)
        m_candidateCondition = rankedCondition(query.rule, Among::Candidates, m_candidateRank);
    if (scope == Scope::MoreCandidates) {
        m_condition = "(" + m_condition + ")" + conditionOfMore(query.rule, Among::StoredPlaces);
        m_candidateCondition = "(" + m_candidateCondition + ")" + conditionOfMore(query.rule, Among::Candidates);
    }
    // The external channel knows only what was saved.
    if (m_external)
        m_condition = "(" + m_condition + ") AND p.mask & " + std::to_string(PlacePrivate::ExplicitlySaved);
    m_order = sortTerms(query.sort);
}

std::string FindSql::selectPage() const
{
    const std::string order = m_order + "p.id ASC LIMIT ? OFFSET ?";
    if (m_scope != Scope::Stored)
        return "SELECT p.id FROM (" + foundPlaces() + ") p ORDER BY p.rank, " + order;
    const char *record = m_headerOnly ? "p.header" : "p.full_record";
    return std::string("SELECT ") + record + " FROM place p WHERE " + m_condition + " ORDER BY "
           + (m_rank.empty() ? "" : m_rank + ", ") + order;
}

std::string FindSql::selectCount() const
{
    if (m_scope == Scope::Stored)
        return "SELECT count(*) FROM place p WHERE " + m_condition;
    return "SELECT count(*) FROM (" + foundPlaces() + ")";
}

std::string FindSql::foundPlaces() const
{
    const auto arm = [](const std::string &table, const std::string &rank, const std::string &condition) {
        return std::string("SELECT ") + COLUMNS + ", " + (rank.empty() ? "0" : rank) + " AS rank FROM " + table
               + " p WHERE " + condition;
    };
    return arm("place", m_rank, m_condition) + " UNION ALL "
           + arm("temp.candidate", m_candidateRank, m_candidateCondition);
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

std::string FindSql::conditionOfMore(const Rule &rule, Among among)
{
    m_withoutProviders = true;
    std::string unused;
    const std::string known = rankedCondition(rule, among, unused);
    m_withoutProviders = false;
    return " AND p.id IN (SELECT place FROM temp.found) AND NOT (" + known + ")";
}

/// Searches of their own put their results one after the other under AND and merge them under OR; a place that several
/// of them find stands where the first one has it. Candidates belong to the searches that asked for some.
std::string FindSql::rankedCondition(const Rule &rule, Among among, std::string &rank)
{
    m_among = among;
    const auto memberCondition = [this](const Rule &member) {
        return m_among == Among::Candidates && !hasSource(member) ? NOTHING : condition(member);
    };
    if (!joinsSearches(rule))
        return memberCondition(rule);
    std::string all;
    std::string cases;
    for (std::size_t i = 0; i < rule.members.size(); ++i) {
        const std::string member = memberCondition(rule.members[i]);
        all += (i > 0 ? " OR (" : "(") + member + ")";
        cases += " WHEN (" + member + ") THEN " + std::to_string(i);
    }
    if (rule.kind == SearchRuleKind::And && rule.members.size() > 1)
        rank = "CASE" + cases + " END";
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
        return partsOf("property", foldedText("key", rule.members[0].op, rule.members[0].text) + " AND "
                                       + foldedText("value", rule.members[1].op, rule.members[1].text));
    }
    std::string joined;
    for (const Rule &member : rule.members)
        joined += (joined.empty() ? "(" : link + std::string("(")) + condition(member) + ")";
    return joined.empty() ? ofNone : joined;
}

std::string FindSql::leaf(const Rule &rule)
{
    // An application's places, uses and favourites are stored ones.
    const bool isCandidate = m_among == Among::Candidates;
    const bool isPresent = rule.op != SearchOperator::NotEqual;
    const int op = isPresent ? rule.op : SearchOperator::Equals;
    switch (rule.field) {
    case Field::AuxiliaryKey:
        return partsOf("property", foldedText("key", rule.op, rule.text));
    case Field::AuxiliaryValue:
        return partsOf("property", foldedText("value", rule.op, rule.text));
    case Field::LastUsedTime:
        return number("p.last_used", rule.op, rule.value);
    case Field::Name:
        return nameCondition(rule.op, rule.text);
    case Field::Owner:
    case Field::MyPlaces:
        return exactText("p.owner", rule.op, rule.text);
    case Field::Tag:
        return partsOf("tag", exactText("tag", op, rule.text), isPresent);
    case Field::Type:
        return partsOf("auxiliary", exactText("type", op, rule.text), isPresent);
    case Field::RecentlyPicked:
        return m_external || isCandidate ? NOTHING : "p.mask & 1";
    case Field::ExcludeFavorites:
        return isCandidate ? EVERYTHING
                           : "p.id NOT IN (SELECT place FROM tag WHERE tag = " + bind(Tags::Favorite) + ")";
    case Field::ListFavorite:
        return isCandidate ? NOTHING : "p.id IN (SELECT place FROM tag WHERE tag = " + bind(Tags::Favorite) + ")";
    case Field::NonContact:
        return isCandidate ? "NOT p.is_contact" : "NOT " + std::string(OF_A_CONTACT);
    default:
        return rule.source == Rule::NO_SOURCE ? notUnderstood() : sourceLeaf(rule);
    }
}

/// A leaf that finds what is not stored finds a stored place too when that is what it found; and some look among the
/// stored places on their own account.
std::string FindSql::sourceLeaf(const Rule &rule)
{
    const SourceKind kind = sourceKindOf(rule);
    if (m_external && kind != SourceKind::Provider)
        return NOTHING;
    const bool looks = m_scope != Scope::Stored && !(m_withoutProviders && kind == SourceKind::Provider);
    std::string found =
        looks ? "p.id IN (SELECT place FROM temp.found WHERE source = " + std::to_string(rule.source) + ")" : NOTHING;
    if (m_among == Among::Candidates || kind == SourceKind::Provider || kind == SourceKind::SearchTerms)
        return found;
    const char *ofKind = kind == SourceKind::Contacts ? OF_A_CONTACT : IS_A_ROOM;
    const std::string stored = ofKind + std::string(" AND ") + nameCondition(SearchOperator::Contains, rule.text);
    return looks ? "(" + stored + ") OR " + found : stored;
}

/// Places that have a part, or none, of which the condition holds.
std::string FindSql::partsOf(const char *table, const std::string &condition, bool present)
{
    const bool isCandidate = m_among == Among::Candidates;
    m_needsParts = m_needsParts || isCandidate;
    return std::string("p.id ") + (present ? "" : "NOT ") + "IN (SELECT place FROM "
           + (isCandidate ? "temp.candidate_" : "main.") + table + " WHERE " + condition + ")";
}

std::string FindSql::nameCondition(int op, const QString &term)
{
    if (op != SearchOperator::Contains || m_among == Among::Candidates)
        return foldedText("p.name_key", op, term);
    if (term.isEmpty())
        return EVERYTHING;
    const QString starts = matchExpression(term);
    if (starts.isEmpty())
        return foldedText("p.name_key", op, term);
    return "p.id IN (SELECT rowid FROM name_index WHERE name_index MATCH " + bind(starts) + ")";
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
    if (sort.order != SortOrder::Ascending && sort.order != SortOrder::Descending)
        return notUnderstood(), std::string();
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
