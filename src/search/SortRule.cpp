// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SortRule.h"

#include "search/SortRulePrivate.h"

#include <algorithm>

namespace vela::platform::places
{

SortRulePrivate::~SortRulePrivate() = default;

bool SortRulePrivate::operator==(const SortRulePrivate &other) const
{
    return typeid(*this) == typeid(other);
}

bool SortRulePrivate::operator!=(const SortRulePrivate &other) const
{
    return !(*this == other);
}

bool SimpleSortRule::operator==(const SortRulePrivate &other) const
{
    const auto *rule = dynamic_cast<const SimpleSortRule *>(&other);
    return rule && m_field == rule->m_field && m_order == rule->m_order;
}

bool DistanceSortRule::operator==(const SortRulePrivate &other) const
{
    const auto *rule = dynamic_cast<const DistanceSortRule *>(&other);
    return rule && m_centre == rule->m_centre && m_order == rule->m_order;
}

CombinedSortRule::~CombinedSortRule()
{
    for (auto rule = m_rules.rbegin(); rule != m_rules.rend(); ++rule)
        delete *rule;
}

bool CombinedSortRule::operator==(const SortRulePrivate &other) const
{
    const auto *rule = dynamic_cast<const CombinedSortRule *>(&other);
    if (!rule || m_rules.size() != rule->m_rules.size())
        return false;
    const auto same = [](const SortRulePrivate *a, const SortRulePrivate *b) { return a && b ? *a == *b : a == b; };
    return std::all_of(m_rules.begin(), m_rules.end(), [&](const SortRulePrivate *mine) {
        return std::any_of(rule->m_rules.begin(), rule->m_rules.end(),
                           [&](const SortRulePrivate *their) { return same(mine, their); });
    });
}

bool CombinedSortRule::addRule(const SortRulePrivate *rule)
{
    if (dynamic_cast<const CombinedSortRule *>(rule))
        return false;
    m_rules.push_back(rule);
    return true;
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
