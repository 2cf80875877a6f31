// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchRule.h"

#include "model/DebugParts.h"
#include "places/Utilities.h"
#include "search/RuleMembers.h"
#include "search/SearchRulePrivate.h"

#include <utility>

namespace vela::platform::places
{

namespace
{

using Node = SearchRulePrivate::Node;

Node textRule(SearchOperator::Type op, SearchRulePrivate::Field field, const QString &text)
{
    return std::make_unique<UnaryRule<std::string>>(op, field, Utilities::toStdString(text));
}

Node nullaryRule(SearchRulePrivate::Field field)
{
    return std::make_unique<NullaryRule>(field);
}

Node nameWordsRule(const QString &text)
{
    return SearchRulePrivate::createNameRule(SearchOperator::Contains, text);
}

template <typename Connective>
Node combine(Node a, Node b)
{
    if (auto *connective = dynamic_cast<Connective *>(a.get())) {
        connective->append(std::move(b));
        return a;
    }
    if (auto *connective = dynamic_cast<Connective *>(b.get())) {
        connective->append(std::move(a));
        return b;
    }
    return std::make_unique<Connective>(std::move(a), std::move(b));
}

QString expressionOf(const SearchRulePrivate *rule);

QString joined(const ConnectiveRule &connective, const char *separator)
{
    QStringList members;
    for (const SearchRulePrivate *member : connective.getRules())
        members.append(expressionOf(member));
    return QLatin1Char('(') + members.join(QLatin1String(separator)) + QLatin1Char(')');
}

QString quoted(const std::string &utf8)
{
    QString text;
    QDebug(&text).nospace() << QString::fromStdString(utf8);
    return text;
}

QString comparison(SearchRulePrivate::Field field, SearchOperator::Type op, const QString &value)
{
    return QString::fromLatin1(DebugParts::nameOf(field) + ' ' + DebugParts::nameOf(op) + ' ') + value;
}

/// A rule as text for people: `(Name Contains "lake" and RecentlyPicked)`.
QString expressionOf(const SearchRulePrivate *rule)
{
    if (const auto *text = dynamic_cast<const UnaryRule<std::string> *>(rule))
        return comparison(text->getField(), text->getOperator(), quoted(text->getValue()));
    if (const auto *number = dynamic_cast<const UnaryRule<int> *>(rule))
        return comparison(number->getField(), number->getOperator(),
                          QString::number(static_cast<unsigned int>(number->getValue())));
    if (const auto *nullary = dynamic_cast<const NullaryRule *>(rule))
        return QString::fromLatin1(DebugParts::nameOf(nullary->getField()));
    if (const auto *conjunction = dynamic_cast<const AndRule *>(rule))
        return joined(*conjunction, " and ");
    if (const auto *disjunction = dynamic_cast<const OrRule *>(rule))
        return joined(*disjunction, " or ");
    if (const auto *disjoint = dynamic_cast<const DisjointRule *>(rule))
        return joined(*disjoint, "");
    return QStringLiteral("any place");
}

/// The node of a rule after a move. Never destroyed: static rules of an application may be destroyed later.
const QSharedPointer<SearchRulePrivate> &newRule()
{
    static const auto *const rule = new QSharedPointer<SearchRulePrivate>(new SearchRulePrivate);
    return *rule;
}

} // namespace

SearchRulePrivate::~SearchRulePrivate() = default;

SearchRulePrivate *SearchRulePrivate::clone() const
{
    return new SearchRulePrivate(m_operator);
}

bool SearchRulePrivate::operator==(const SearchRulePrivate &other) const
{
    return isSameKind(other) && m_operator == other.m_operator;
}

bool SearchRulePrivate::operator!=(const SearchRulePrivate &other) const
{
    return !(*this == other);
}

Node SearchRulePrivate::createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key)
{
    return textRule(op, AuxiliaryKey, key);
}

Node SearchRulePrivate::createAuxiliaryValueRule(SearchOperator::Type op, const QString &value)
{
    return textRule(op, AuxiliaryValue, value);
}

Node SearchRulePrivate::createAuxiliaryPairRule(const QString &key, SearchOperator::Type op, const QString &value)
{
    return std::make_unique<AndRule>(createAuxiliaryKeyRule(SearchOperator::Equals, key),
                                     createAuxiliaryValueRule(op, value));
}

Node SearchRulePrivate::createLastUsedTimeRule(SearchOperator::Type op, unsigned int time)
{
    return std::make_unique<UnaryRule<int>>(op, LastUsedTime, static_cast<int>(time));
}

Node SearchRulePrivate::createNameRule(SearchOperator::Type op, const QString &name)
{
    return textRule(op, Name, name);
}

Node SearchRulePrivate::createOwnerRule(SearchOperator::Type op, const QString &owner)
{
    return textRule(op, Owner, owner);
}

Node SearchRulePrivate::createTagRule(SearchOperator::Type op, const QString &tag)
{
    return textRule(op, Tag, tag);
}

Node SearchRulePrivate::createTypeRule(SearchOperator::Type op, const QString &type)
{
    return textRule(op, Type, type);
}

Node SearchRulePrivate::createRecentlyPickedRule()
{
    return nullaryRule(RecentlyPicked);
}

Node SearchRulePrivate::createRecentSearchTermsRule()
{
    return nullaryRule(RecentSearchTerms);
}

Node SearchRulePrivate::createMyPlacesRule(const QString &owner)
{
    return textRule(SearchOperator::Equals, MyPlaces, owner);
}

Node SearchRulePrivate::createExcludeFavoritesRule()
{
    return nullaryRule(ExcludeFavorites);
}

Node SearchRulePrivate::createGeocodeAddressRule(const QString &text)
{
    return textRule(SearchOperator::Equals, GeocodeAddress, text);
}

Node SearchRulePrivate::createPOINameRule(const QString &text)
{
    return textRule(SearchOperator::Equals, POIName, text);
}

Node SearchRulePrivate::createContactQueryRule(const QString &text)
{
    return textRule(SearchOperator::Equals, ContactQuery, text);
}

Node SearchRulePrivate::createNonContactQueryRule(const QString &text)
{
    return std::make_unique<AndRule>(nameWordsRule(text), nullaryRule(NonContact));
}

Node SearchRulePrivate::createListFavoriteRule()
{
    return nullaryRule(ListFavorite);
}

Node SearchRulePrivate::createSuggestionRule(const QString &text)
{
    return textRule(SearchOperator::Equals, Suggestion, text);
}

Node SearchRulePrivate::createPOICategoryRule(const QString &text)
{
    return textRule(SearchOperator::Equals, POICategory, text);
}

Node SearchRulePrivate::createPOICategorySuggestionRule(const QString &text)
{
    return textRule(SearchOperator::Equals, POICategorySuggestion, text);
}

Node SearchRulePrivate::createMeetingRoomRule(const QString &text)
{
    return textRule(SearchOperator::Equals, MeetingRoom, text);
}

Node SearchRulePrivate::createRemotePlacesRule(const QString &text, bool byCategory)
{
    return textRule(SearchOperator::Equals, byCategory ? RemoteByCategoryOrName : RemoteByName, text);
}

Node SearchRulePrivate::createQueryRecentlyPickedRule(const QString &text)
{
    if (text.isEmpty())
        return createRecentlyPickedRule();
    return std::make_unique<AndRule>(createRecentlyPickedRule(), nameWordsRule(text));
}

Node SearchRulePrivate::createQueryTagRule(SearchOperator::Type op, const QString &tag, const QString &text)
{
    if (text.isEmpty())
        return createTagRule(op, tag);
    return std::make_unique<AndRule>(createTagRule(op, tag), nameWordsRule(text));
}

Node SearchRulePrivate::createAndRule(Node a, Node b)
{
    return combine<AndRule>(std::move(a), std::move(b));
}

Node SearchRulePrivate::createOrRule(Node a, Node b)
{
    return combine<OrRule>(std::move(a), std::move(b));
}

bool NullaryRule::operator==(const SearchRulePrivate &other) const
{
    return SearchRulePrivate::operator==(other) && m_field == static_cast<const NullaryRule &>(other).m_field;
}

bool ConnectiveRule::operator==(const SearchRulePrivate &other) const
{
    return isSameKind(other) && haveSameMembers(m_rules, static_cast<const ConnectiveRule &>(other).m_rules);
}

void ConnectiveRule::addRule(const SearchRulePrivate *rule)
{
    m_rules.push_back(Member(rule));
}

std::vector<const SearchRulePrivate *> ConnectiveRule::getRules() const
{
    return membersOf(m_rules);
}

void ConnectiveRule::cloneMembersTo(ConnectiveRule &target) const
{
    for (const Member &rule : m_rules)
        target.append(Node(rule ? rule->clone() : nullptr));
}

AndRule::AndRule(Node a, Node b)
{
    m_rules = {Member(std::move(a)), Member(std::move(b))};
}

AndRule *AndRule::clone() const
{
    auto copy = std::make_unique<AndRule>();
    cloneMembersTo(*copy);
    return copy.release();
}

OrRule::OrRule(Node a, Node b)
{
    m_rules = {Member(std::move(a)), Member(std::move(b))};
}

OrRule *OrRule::clone() const
{
    auto copy = std::make_unique<OrRule>();
    cloneMembersTo(*copy);
    return copy.release();
}

DisjointRule::DisjointRule(Node rule)
    : DisjointRule(Member(std::move(rule)))
{}

DisjointRule::DisjointRule(Member member)
{
    m_rules = {std::move(member)};
}

DisjointRule *DisjointRule::clone() const
{
    return new DisjointRule(m_rules.front());
}

void DisjointRule::addRule(const SearchRulePrivate *) {}

SearchRule::SearchRule()
    : SearchRule(new SearchRulePrivate)
{}

SearchRule::SearchRule(SearchRulePrivate *owned)
    : d(owned)
{}

SearchRule::SearchRule(const SearchRule &other) = default;
SearchRule &SearchRule::operator=(const SearchRule &other) = default;
SearchRule::~SearchRule() = default;

SearchRule::SearchRule(SearchRule &&other) noexcept
    : d(newRule())
{
    d.swap(other.d);
}

SearchRule &SearchRule::operator=(SearchRule &&other) noexcept
{
    SearchRule(std::move(other)).swap(*this);
    return *this;
}

SearchRule SearchRule::createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key)
{
    return SearchRule(SearchRulePrivate::createAuxiliaryKeyRule(op, key).release());
}

SearchRule SearchRule::createAuxiliaryValueRule(SearchOperator::Type op, const QString &value)
{
    return SearchRule(SearchRulePrivate::createAuxiliaryValueRule(op, value).release());
}

SearchRule SearchRule::createAuxiliaryPairRule(const QString &key, SearchOperator::Type op, const QString &value)
{
    return SearchRule(SearchRulePrivate::createAuxiliaryPairRule(key, op, value).release());
}

SearchRule SearchRule::createLastUsedTimeRule(SearchOperator::Type op, unsigned int time)
{
    return SearchRule(SearchRulePrivate::createLastUsedTimeRule(op, time).release());
}

SearchRule SearchRule::createNameRule(SearchOperator::Type op, const QString &name)
{
    return SearchRule(SearchRulePrivate::createNameRule(op, name).release());
}

SearchRule SearchRule::createOwnerRule(SearchOperator::Type op, const QString &owner)
{
    return SearchRule(SearchRulePrivate::createOwnerRule(op, owner).release());
}

SearchRule SearchRule::createTagRule(SearchOperator::Type op, const QString &tag)
{
    return SearchRule(SearchRulePrivate::createTagRule(op, tag).release());
}

SearchRule SearchRule::createTypeRule(SearchOperator::Type op, const QString &type)
{
    return SearchRule(SearchRulePrivate::createTypeRule(op, type).release());
}

SearchRule SearchRule::createPOINameRule(const QString &text)
{
    return SearchRule(SearchRulePrivate::createPOINameRule(text).release());
}

SearchRule SearchRule::createGeocodeAddressRule(const QString &text)
{
    return SearchRule(SearchRulePrivate::createGeocodeAddressRule(text).release());
}

SearchRule SearchRule::createContactQueryRule(const QString &text)
{
    return SearchRule(SearchRulePrivate::createContactQueryRule(text).release());
}

SearchRule SearchRule::createAndRule(const SearchRule &a, const SearchRule &b)
{
    return SearchRule(SearchRulePrivate::createAndRule(Node(a.d->clone()), Node(b.d->clone())).release());
}

SearchRule SearchRule::createOrRule(const SearchRule &a, const SearchRule &b)
{
    return SearchRule(SearchRulePrivate::createOrRule(Node(a.d->clone()), Node(b.d->clone())).release());
}

SearchRule SearchRule::createRecentlyPickedRule()
{
    return SearchRule(SearchRulePrivate::createRecentlyPickedRule().release());
}

bool SearchRule::operator==(const SearchRule &other) const
{
    return d && other.d && *d == *other.d;
}

bool SearchRule::operator!=(const SearchRule &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const SearchRule &rule)
{
    DebugParts parts(debug, "SearchRule");
    if (rule != SearchRule())
        parts.add(qUtf8Printable(expressionOf(SearchRulePrivate::privateFromPublic(rule))));
    return debug;
}

} // namespace vela::platform::places
