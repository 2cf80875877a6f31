// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SortRule.h"

#include "model/DebugParts.h"
#include "search/RuleMembers.h"
#include "search/SortRulePrivate.h"

#include <utility>

namespace vela::platform::places
{

namespace
{

void addTo(DebugParts &parts, const SortRulePrivate *rule)
{
    if (const auto *simple = dynamic_cast<const SimpleSortRule *>(rule))
        parts.addName(simple->getType()).addName(simple->getOrder());
    if (const auto *distance = dynamic_cast<const DistanceSortRule *>(rule))
        parts.addLabelled("distance from", distance->getCoordinates()).addName(distance->getOrder());
    if (const auto *combined = dynamic_cast<const CombinedSortRule *>(rule))
        for (const SortRulePrivate *member : combined->getRules())
            addTo(parts, member);
}

/// The node of a rule after a move. Never destroyed: static rules of an application may be destroyed later.
const QSharedPointer<SortRulePrivate> &newRule()
{
    static const auto *const rule = new QSharedPointer<SortRulePrivate>(new SimpleSortRule);
    return *rule;
}

} // namespace

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

SortRule::SortRule(SortRule &&other) noexcept
    : d(newRule())
{
    d.swap(other.d);
}

SortRule &SortRule::operator=(SortRule &&other) noexcept
{
    SortRule(std::move(other)).swap(*this);
    return *this;
}

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

QDebug operator<<(QDebug debug, const SortRule &rule)
{
    DebugParts parts(debug, "SortRule");
    addTo(parts, SortRulePrivate::privateFromPublic(rule));
    return debug;
}

} // namespace vela::platform::places
