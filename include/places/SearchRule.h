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
    SearchRule &operator=(const SearchRule &other);
    ~SearchRule();

    /// Places with auxiliary data under a key that compares so.
    static SearchRule createAuxiliaryKeyRule(SearchOperator::Type op, const QString &key);
    /// Places with auxiliary data whose value compares so, under any key.
    static SearchRule createAuxiliaryValueRule(SearchOperator::Type op, const QString &value);
    /// Places with auxiliary data under exactly this key whose value compares so.
    static SearchRule createAuxiliaryPairRule(const QString &key, SearchOperator::Type op, const QString &value);
    /// Places last used at a time, in seconds since 1970-01-01T00:00:00 UTC, that compares so.
    static SearchRule createLastUsedTimeRule(SearchOperator::Type op, unsigned int time);
    /// Places whose name compares so; case and accents do not count.
    static SearchRule createNameRule(SearchOperator::Type op, const QString &name);
    /// Places by the application that added them.
    static SearchRule createOwnerRule(SearchOperator::Type op, const QString &owner);
    /// Places with a tag that compares so.
    static SearchRule createTagRule(SearchOperator::Type op, const QString &tag);
    /// Places with auxiliary data of a type that compares so.
    static SearchRule createTypeRule(SearchOperator::Type op, const QString &type);
    /// Points of interest of remote providers, by name.
    static SearchRule createPOINameRule(const QString &text);
    /// Places that remote providers find for an address.
    static SearchRule createGeocodeAddressRule(const QString &text);
    /// Places of contacts, by name.
    static SearchRule createContactQueryRule(const QString &text);
    /// Places that both rules select.
    static SearchRule createAndRule(const SearchRule &a, const SearchRule &b);
    /// Places that either rule selects.
    static SearchRule createOrRule(const SearchRule &a, const SearchRule &b);
    /// Places that were picked recently.
    static SearchRule createRecentlyPickedRule();

    /// True when both rules are built alike; the order within an "and" or an "or" does not count.
    bool operator==(const SearchRule &other) const;
    bool operator!=(const SearchRule &other) const;

private:
    friend class SearchRulePrivate;
    explicit SearchRule(SearchRulePrivate *owned);
    QSharedPointer<SearchRulePrivate> d;
};

} // namespace vela::platform::places
