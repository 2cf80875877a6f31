// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/SearchOperator.h>

#include <QtCore/QSharedPointer>
#include <QtCore/QString>

namespace vela::platform::places
{

class SearchRulePrivate;

/// Selects the places of a find. A rule is immutable; copies share it. The service accepts rules up to 16 levels deep;
/// chains of one connective count as one level.
class PLACES_EXPORT SearchRule
{
public:
    /// The empty rule: all stored places.
    SearchRule();
    SearchRule(const SearchRule &other);
    /// Moves the value; `other` becomes the empty rule.
    SearchRule(SearchRule &&other) noexcept;
    SearchRule &operator=(const SearchRule &other);
    SearchRule &operator=(SearchRule &&other) noexcept;
    ~SearchRule();

    /// Swaps the values without a copy.
    void swap(SearchRule &other) noexcept { d.swap(other.d); }
    friend void swap(SearchRule &left, SearchRule &right) noexcept { left.swap(right); }

    /// Places with auxiliary data whose key matches.
    [[nodiscard]] static SearchRule createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key);
    /// Places with auxiliary data whose value matches, for any key.
    [[nodiscard]] static SearchRule createAuxiliaryValueRule(SearchOperator::Type op, const QString &value);
    /// Places with auxiliary data whose value matches, for exactly this key.
    [[nodiscard]] static SearchRule createAuxiliaryPairRule(const QString &key, SearchOperator::Type op,
                                                            const QString &value);
    /// Places whose last use matches a time, in seconds since 1970-01-01T00:00:00 UTC.
    [[nodiscard]] static SearchRule createLastUsedTimeRule(SearchOperator::Type op, unsigned int time);
    /// Places whose name matches, ignoring case and accents.
    [[nodiscard]] static SearchRule createNameRule(SearchOperator::Type op, const QString &name);
    /// Places whose owner, the application that added them, matches.
    [[nodiscard]] static SearchRule createOwnerRule(SearchOperator::Type op, const QString &owner);
    /// Places with a matching tag.
    [[nodiscard]] static SearchRule createTagRule(SearchOperator::Type op, const QString &tag);
    /// Places with auxiliary data whose type matches.
    [[nodiscard]] static SearchRule createTypeRule(SearchOperator::Type op, const QString &type);
    /// Points of interest of remote providers, by name.
    [[nodiscard]] static SearchRule createPOINameRule(const QString &text);
    /// Places of remote providers for an address.
    [[nodiscard]] static SearchRule createGeocodeAddressRule(const QString &text);
    /// Places of contacts, by name.
    [[nodiscard]] static SearchRule createContactQueryRule(const QString &text);
    /// Places that match both rules.
    [[nodiscard]] static SearchRule createAndRule(const SearchRule &a, const SearchRule &b);
    /// Places that match either rule.
    [[nodiscard]] static SearchRule createOrRule(const SearchRule &a, const SearchRule &b);
    /// Recently picked places.
    [[nodiscard]] static SearchRule createRecentlyPickedRule();

    /// True when both rules have the same structure; the order within an "and" or an "or" does not matter.
    bool operator==(const SearchRule &other) const;
    bool operator!=(const SearchRule &other) const;

private:
    friend class SearchRulePrivate;
    explicit SearchRule(SearchRulePrivate *owned);
    QSharedPointer<SearchRulePrivate> d;
};

/// For debugging: the rule as an expression.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SearchRule &rule);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SearchRule, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SearchRule)
