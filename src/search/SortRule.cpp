// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SortRule.h"

#include "search/RuleMembers.h"
#include "search/SortRulePrivate.h"

namespace vela::platform::places
{

SortRulePrivate::~SortRulePrivate() = default;

bool SortRulePrivate::operator==(const SortRulePrivate &other) const
{
    return isSameKind(other);
}

bool SortRulePrivate::operator!=(const SortRulePrivate &other) const
{
    return !(*this == other);
}

bool SimpleSortRule::operator==(const SortRulePrivate &other) const
{
    if (!isSameKind(other))
        return false;
    const auto &rule = static_cast<const SimpleSortRule &>(other);
    return m_field == rule.m_field && m_order == rule.m_order;
}

bool DistanceSortRule::operator==(const SortRulePrivate &other) const
{
    if (!isSameKind(other))
        return false;
    const auto &rule = static_cast<const DistanceSortRule &>(other);
    return m_centre == rule.m_centre && m_order == rule.m_order;
}

CombinedSortRule::~CombinedSortRule()
{
    while (!m_rules.empty())
        m_rules.pop_back();
}

bool CombinedSortRule::operator==(const SortRulePrivate &other) const
{
    return isSameKind(other) && haveSameMembers(m_rules, static_cast<const CombinedSortRule &>(other).m_rules);
}

bool CombinedSortRule::addRule(const SortRulePrivate *rule)
{
    if (dynamic_cast<const CombinedSortRule *>(rule))
        return false;
    m_rules.push_back(std::unique_ptr<const SortRulePrivate>(rule));
    return true;
}

std::vector<const SortRulePrivate *> CombinedSortRule::getRules() const
{
    return membersOf(m_rules);
}

SortRule::SortRule()
    : SortRule(new SimpleSortRule)
{}

SortRule::SortRule(SortRulePrivate *owned)
    : d(owned)
{}

SortRule::SortRule(const SortRule &other) = default;
SortRule &SortRule::operator=(const SortRule &other) = default;
SortRule::~SortRule() = default;

SortRule SortRule::createSimpleSortRule(SortField::Type field, SortOrder::Type order)
{
    return SortRule(new SimpleSortRule(field, order));
}

SortRule SortRule::createDistanceSortRule(const Coordinates &centre, SortOrder::Type order)
{
    return SortRule(new DistanceSortRule(centre, order));
}

bool SortRule::operator==(const SortRule &other) const
{
    return d && other.d && *d == *other.d;
}

bool SortRule::operator!=(const SortRule &other) const
{
    return !(*this == other);
}

} // namespace vela::platform::places
