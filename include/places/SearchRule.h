// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/SearchOperator.h>

#include <QtCore/QSharedPointer>
#include <QtCore/QString>

namespace vela::platform::places
{

class SearchRulePrivate;

/// Says which places a find returns. A rule never changes once it is made; copies share it. The service takes rules up
/// to 16 levels deep; chains of one connective count as one level.
class PLACES_EXPORT SearchRule
{
public:
    /// The empty rule: every stored place.
    SearchRule();
    SearchRule(const SearchRule &other);
    /// Takes the value of `other`, which is the empty rule from then on.
    SearchRule(SearchRule &&other) noexcept;
    SearchRule &operator=(const SearchRule &other);
    SearchRule &operator=(SearchRule &&other) noexcept;
    ~SearchRule();

    /// Exchanges the values without a copy.
    void swap(SearchRule &other) noexcept { d.swap(other.d); }
    friend void swap(SearchRule &left, SearchRule &right) noexcept { left.swap(right); }

    /// Places with auxiliary data under a key that compares so.
    [[nodiscard]] static SearchRule createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key);
    /// Places with auxiliary data whose value compares so, under any key.
    [[nodiscard]] static SearchRule createAuxiliaryValueRule(SearchOperator::Type op, const QString &value);
    /// Places with auxiliary data under exactly this key whose value compares so.
    [[nodiscard]] static SearchRule createAuxiliaryPairRule(const QString &key, SearchOperator::Type op,
                                                            const QString &value);
    /// Places last used at a time, in seconds since 1970-01-01T00:00:00 UTC, that compares so.
    [[nodiscard]] static SearchRule createLastUsedTimeRule(SearchOperator::Type op, unsigned int time);
    /// Places whose name compares so; case and accents do not count.
    [[nodiscard]] static SearchRule createNameRule(SearchOperator::Type op, const QString &name);
    /// Places by the application that added them.
    [[nodiscard]] static SearchRule createOwnerRule(SearchOperator::Type op, const QString &owner);
    /// Places with a tag that compares so.
    [[nodiscard]] static SearchRule createTagRule(SearchOperator::Type op, const QString &tag);
    /// Places with auxiliary data of a type that compares so.
    [[nodiscard]] static SearchRule createTypeRule(SearchOperator::Type op, const QString &type);
    /// Points of interest of remote providers, by name.
    [[nodiscard]] static SearchRule createPOINameRule(const QString &text);
    /// Places that remote providers find for an address.
    [[nodiscard]] static SearchRule createGeocodeAddressRule(const QString &text);
    /// Places of contacts, by name.
    [[nodiscard]] static SearchRule createContactQueryRule(const QString &text);
    /// Places that both rules select.
    [[nodiscard]] static SearchRule createAndRule(const SearchRule &a, const SearchRule &b);
    /// Places that either rule selects.
    [[nodiscard]] static SearchRule createOrRule(const SearchRule &a, const SearchRule &b);
    /// Places that were picked recently.
    [[nodiscard]] static SearchRule createRecentlyPickedRule();

    /// True when both rules are built alike; the order within an "and" or an "or" does not count.
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
