// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/SearchRule.h"

#include <memory>
#include <typeinfo>
#include <utility>
#include <vector>

namespace vela::platform::places
{

/// A node of a rule tree. This base class is the empty rule.
class SearchRulePrivate
{
    Q_GADGET
public:
    /// Field of a leaf.
    enum Field : int
    {
        AuxiliaryKey = 1,           ///< 1: a key of the auxiliary data.
        AuxiliaryValue = 2,         ///< 2: a value of the auxiliary data.
        LastUsedTime = 3,           ///< 3: the time of the last use.
        Name = 4,                   ///< 4: the name.
        Owner = 5,                  ///< 5: the application that added the place.
        Tag = 6,                    ///< 6: a tag.
        Type = 7,                   ///< 7: the type of an auxiliary record.
        RecentlyPicked = 8,         ///< 8: the place is in the recent bucket.
        RecentSearchTerms = 10,     ///< 10: terms searched for recently, as places.
        MyPlaces = 11,              ///< 11: the caller's application added the place.
        ExcludeFavorites = 12,      ///< 12: the place is not a favourite.
        GeocodeAddress = 15,        ///< 15: remote places by address.
        POIName = 16,               ///< 16: remote points of interest by name.
        ContactQuery = 17,          ///< 17: places of contacts by name.
        NonContact = 18,            ///< 18: the place is no contact's.
        ListFavorite = 19,          ///< 19: the place is a favourite.
        Suggestion = 20,            ///< 20: completions of a term.
        POICategory = 21,           ///< 21: remote points of interest by category.
        POICategorySuggestion = 22, ///< 22: completions of a term among the categories.
        MeetingRoom = 23,           ///< 23: meeting rooms by name.
        RemoteByName = 24,          ///< 24: places of the providers by name.
        RemoteByCategoryOrName = 25 ///< 25: places of the providers by category or name.
    };
    Q_ENUM(Field)

    using Node = std::unique_ptr<SearchRulePrivate>;

    SearchRulePrivate() = default;
    explicit SearchRulePrivate(SearchOperator::Type op)
        : m_operator(op)
    {}
    SearchRulePrivate(const SearchRulePrivate &) = delete;
    SearchRulePrivate &operator=(const SearchRulePrivate &) = delete;
    virtual ~SearchRulePrivate();

    /// A copy that the caller owns.
    [[nodiscard]] virtual SearchRulePrivate *clone() const;
    virtual bool operator==(const SearchRulePrivate &other) const;
    virtual bool operator!=(const SearchRulePrivate &other) const;

    SearchOperator::Type getOperator() const { return m_operator; }

    static SearchRulePrivate *privateFromPublic(const SearchRule &rule) { return rule.d.data(); }
    /// Transfers `owned` to `rule`.
    static void setPrivate(SearchRule &rule, SearchRulePrivate *owned) { rule.d.reset(owned); }

    [[nodiscard]] static Node createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key);
    [[nodiscard]] static Node createAuxiliaryValueRule(SearchOperator::Type op, const QString &value);
    [[nodiscard]] static Node createAuxiliaryPairRule(const QString &key, SearchOperator::Type op,
                                                      const QString &value);
    [[nodiscard]] static Node createLastUsedTimeRule(SearchOperator::Type op, unsigned int time);
    [[nodiscard]] static Node createNameRule(SearchOperator::Type op, const QString &name);
    [[nodiscard]] static Node createOwnerRule(SearchOperator::Type op, const QString &owner);
    [[nodiscard]] static Node createTagRule(SearchOperator::Type op, const QString &tag);
    [[nodiscard]] static Node createTypeRule(SearchOperator::Type op, const QString &type);
    [[nodiscard]] static Node createRecentlyPickedRule();
    [[nodiscard]] static Node createRecentSearchTermsRule();
    [[nodiscard]] static Node createMyPlacesRule(const QString &owner);
    [[nodiscard]] static Node createExcludeFavoritesRule();
    [[nodiscard]] static Node createGeocodeAddressRule(const QString &text);
    [[nodiscard]] static Node createPOINameRule(const QString &text);
    [[nodiscard]] static Node createContactQueryRule(const QString &text);
    [[nodiscard]] static Node createNonContactQueryRule(const QString &text);
    [[nodiscard]] static Node createListFavoriteRule();
    [[nodiscard]] static Node createSuggestionRule(const QString &text);
    [[nodiscard]] static Node createPOICategoryRule(const QString &text);
    [[nodiscard]] static Node createPOICategorySuggestionRule(const QString &text);
    [[nodiscard]] static Node createMeetingRoomRule(const QString &text);
    [[nodiscard]] static Node createRemotePlacesRule(const QString &text, bool byCategory);
    [[nodiscard]] static Node createQueryRecentlyPickedRule(const QString &text);
    [[nodiscard]] static Node createQueryTagRule(SearchOperator::Type op, const QString &tag, const QString &text);

    /// Combines two rules: adds one to the other if that is an "and" already, so that chains stay flat.
    [[nodiscard]] static Node createAndRule(Node a, Node b);
    [[nodiscard]] static Node createOrRule(Node a, Node b);

protected:
    bool isSameKind(const SearchRulePrivate &other) const { return typeid(*this) == typeid(other); }

private:
    SearchOperator::Type m_operator = SearchOperator::None;
};

/// A leaf without a value.
class NullaryRule : public SearchRulePrivate
{
public:
    explicit NullaryRule(Field field)
        : m_field(field)
    {}
    [[nodiscard]] NullaryRule *clone() const override { return new NullaryRule(m_field); }
    bool operator==(const SearchRulePrivate &other) const override;

    Field getField() const { return m_field; }

private:
    Field m_field;
};

/// A leaf that compares a field with a value.
template <typename Value>
class UnaryRule : public SearchRulePrivate
{
public:
    UnaryRule(SearchOperator::Type op, Field field, Value value)
        : SearchRulePrivate(op)
        , m_field(field)
        , m_value(std::move(value))
    {}
    [[nodiscard]] UnaryRule *clone() const override { return new UnaryRule(getOperator(), m_field, m_value); }
    bool operator==(const SearchRulePrivate &other) const override
    {
        if (!isSameKind(other))
            return false;
        const auto &rule = static_cast<const UnaryRule &>(other);
        return m_value == rule.m_value && m_field == rule.m_field && getOperator() == rule.getOperator();
    }

    Field getField() const { return m_field; }
    const Value &getValue() const { return m_value; }

private:
    Field m_field;
    Value m_value;
};

/// Combines rules and owns them; a DisjointRule shares its single member with its clones.
class ConnectiveRule : public SearchRulePrivate
{
public:
    /// True for the same number of members when all of these members occur in the other rule, in any order.
    bool operator==(const SearchRulePrivate &other) const override;

    /// Appends a rule and takes ownership.
    virtual void addRule(const SearchRulePrivate *rule);
    /// The members; still owned by this rule.
    std::vector<const SearchRulePrivate *> getRules() const;

protected:
    using Member = std::shared_ptr<const SearchRulePrivate>;
    void append(Node rule) { m_rules.push_back(std::move(rule)); }
    void cloneMembersTo(ConnectiveRule &target) const;

    std::vector<Member> m_rules;
};

/// Matches places that all members match.
class AndRule : public ConnectiveRule
{
public:
    AndRule() = default;
    AndRule(Node a, Node b);
    using ConnectiveRule::append;
    [[nodiscard]] AndRule *clone() const override;
};

/// Matches places that any member matches.
class OrRule : public ConnectiveRule
{
public:
    OrRule() = default;
    OrRule(Node a, Node b);
    using ConnectiveRule::append;
    [[nodiscard]] OrRule *clone() const override;
};

/// An independent search. Its single member is set in the constructor.
class DisjointRule : public ConnectiveRule
{
public:
    explicit DisjointRule(Node rule);
    /// A disjoint rule that shares the member.
    [[nodiscard]] DisjointRule *clone() const override;
    /// No effect; the caller keeps the rule.
    void addRule(const SearchRulePrivate *rule) override;

private:
    explicit DisjointRule(Member member);
};

} // namespace vela::platform::places
