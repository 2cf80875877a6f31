// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/SortRule.h"

#include <memory>
#include <typeinfo>
#include <vector>

namespace vela::platform::places
{

/// A node of a sort rule.
class SortRulePrivate
{
public:
    SortRulePrivate() = default;
    SortRulePrivate(const SortRulePrivate &) = delete;
    SortRulePrivate &operator=(const SortRulePrivate &) = delete;
    virtual ~SortRulePrivate();

    virtual bool operator==(const SortRulePrivate &other) const;
    virtual bool operator!=(const SortRulePrivate &other) const;

    static SortRulePrivate *privateFromPublic(const SortRule &rule) { return rule.d.data(); }
    /// Makes `rule` hold `owned`, which it owns from then on.
    static void setPrivate(SortRule &rule, SortRulePrivate *owned) { rule.d.reset(owned); }

protected:
    bool isSameKind(const SortRulePrivate &other) const { return typeid(*this) == typeid(other); }
};

/// Sorts by one field.
class SimpleSortRule : public SortRulePrivate
{
public:
    SimpleSortRule() = default;
    SimpleSortRule(SortField::Type field, SortOrder::Type order)
        : m_field(field)
        , m_order(order)
    {}
    bool operator==(const SortRulePrivate &other) const override;

    SortField::Type getType() const { return m_field; }
    SortOrder::Type getOrder() const { return m_order; }

private:
    SortField::Type m_field = SortField::Relevance;
    SortOrder::Type m_order = SortOrder::Descending;
};

/// Sorts by distance from a point.
class DistanceSortRule : public SortRulePrivate
{
public:
    DistanceSortRule(const Coordinates &centre, SortOrder::Type order)
        : m_centre(centre)
        , m_order(order)
    {}
    bool operator==(const SortRulePrivate &other) const override;

    Coordinates getCoordinates() const { return m_centre; }
    SortOrder::Type getOrder() const { return m_order; }

private:
    Coordinates m_centre;
    SortOrder::Type m_order;
};

/// Sorts by several rules, the first one first. It owns its members, which go in the reverse of their order.
class CombinedSortRule : public SortRulePrivate
{
public:
    ~CombinedSortRule() override;
    /// True when each has as many members as the other and this one's all occur in the other; order does not count.
    bool operator==(const SortRulePrivate &other) const override;

    /// Appends a rule, which this one owns from then on. A combined rule is refused and stays the caller's.
    bool addRule(const SortRulePrivate *rule);
    /// The members, which stay this rule's own.
    std::vector<const SortRulePrivate *> getRules() const;

private:
    std::vector<std::unique_ptr<const SortRulePrivate>> m_rules;
};

} // namespace vela::platform::places
