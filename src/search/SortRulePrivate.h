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
    /// Transfers `owned` to `rule`.
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

/// Sorts by several rules in order. Owns them and destroys them in reverse order.
class CombinedSortRule : public SortRulePrivate
{
public:
    ~CombinedSortRule() override;
    /// True for the same number of members when all of these members occur in the other rule, in any order.
    bool operator==(const SortRulePrivate &other) const override;

    /// Appends a rule and takes ownership. False for a combined rule, which the caller keeps.
    bool addRule(const SortRulePrivate *rule);
    /// The members; still owned by this rule.
    std::vector<const SortRulePrivate *> getRules() const;

private:
    std::vector<std::unique_ptr<const SortRulePrivate>> m_rules;
};

} // namespace vela::platform::places
