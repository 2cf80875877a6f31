// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Condition.h"

#include "model/PlacePrivate.h"
#include "store/Store.h"

#include <algorithm>
#include <numeric>

namespace placesd
{

using vela::platform::places::PlacePrivate;

namespace
{

/// Maximum number of indexes that one condition reads; each is an open statement.
constexpr std::size_t MOST_SOURCES = 64;

} // namespace

Condition::Source Condition::source(Store &, const Order &, qint64) const
{
    return {};
}

bool Condition::hasSortedSource(const Order &) const
{
    return false;
}

std::unique_ptr<RowSource> Condition::sortedSource(Store &, const Order &) const
{
    return nullptr;
}

std::optional<qint64> Condition::count(Store &) const
{
    return {};
}

// ---------------------------------------------------------------------------------------------------------- AllOf

AllOf::AllOf(Conditions members)
    : m_members(std::move(members))
{
    std::stable_sort(m_members.begin(), m_members.end(),
                     [](const ConditionPtr &a, const ConditionPtr &b) { return a->cost() < b->cost(); });
}

bool AllOf::test(const PlaceRow &row) const
{
    return std::all_of(m_members.begin(), m_members.end(),
                       [&row](const ConditionPtr &member) { return member->test(row); });
}

/// Most places fail the first test.
int AllOf::cost() const
{
    return m_members.empty() ? 0 : m_members.front()->cost();
}

bool AllOf::hasSource() const
{
    return std::any_of(m_members.begin(), m_members.end(),
                       [](const ConditionPtr &member) { return member->hasSource(); });
}

bool AllOf::isSlowToOpen() const
{
    return std::any_of(m_members.begin(), m_members.end(),
                       [](const ConditionPtr &member) { return member->isSlowToOpen(); });
}

/// The shortest source of the members. Members with cheap tests, such as names, come last: their rows are counted, but
/// only up to the shortest length so far.
Condition::Source AllOf::source(Store &store, const Order &order, qint64 limit) const
{
    Source best;
    for (auto position = m_members.rbegin(); position != m_members.rend(); ++position) {
        const ConditionPtr &member = *position;
        if (!member->hasSource())
            continue;
        Source next = member->source(store, order, best.rows ? best.length : limit);
        if (!best.rows || next.length < best.length)
            best = std::move(next);
    }
    return best;
}

const Condition *AllOf::sorted(const Order &order) const
{
    const auto found = std::find_if(m_members.begin(), m_members.end(),
                                    [&order](const ConditionPtr &member) { return member->hasSortedSource(order); });
    return found == m_members.end() ? nullptr : found->get();
}

bool AllOf::hasSortedSource(const Order &order) const
{
    return sorted(order) != nullptr;
}

std::unique_ptr<RowSource> AllOf::sortedSource(Store &store, const Order &order) const
{
    return sorted(order)->sortedSource(store, order);
}

bool AllOf::passesAllStored() const
{
    return std::all_of(m_members.begin(), m_members.end(),
                       [](const ConditionPtr &member) { return member->passesAllStored(); });
}

std::optional<qint64> AllOf::count(Store &store) const
{
    const Condition *counted = nullptr;
    for (const ConditionPtr &member : m_members) {
        if (member->passesAllStored())
            continue;
        if (counted)
            return {};
        counted = member.get();
    }
    return counted ? counted->count(store) : store.placeCount(PlacePrivate::RECENT_AND_SAVED);
}

// ---------------------------------------------------------------------------------------------------------- AnyOf

bool AnyOf::test(const PlaceRow &row) const
{
    return std::any_of(m_members.begin(), m_members.end(),
                       [&row](const ConditionPtr &member) { return member->test(row); });
}

int AnyOf::cost() const
{
    return std::accumulate(m_members.begin(), m_members.end(), 0,
                           [](int sum, const ConditionPtr &member) { return sum + member->cost(); });
}

bool AnyOf::hasSource() const
{
    return m_members.size() <= MOST_SOURCES
           && std::all_of(m_members.begin(), m_members.end(),
                          [](const ConditionPtr &member) { return member->hasSource(); });
}

bool AnyOf::isSlowToOpen() const
{
    return std::any_of(m_members.begin(), m_members.end(),
                       [](const ConditionPtr &member) { return member->isSlowToOpen(); });
}

Condition::Source AnyOf::source(Store &store, const Order &order, qint64 limit) const
{
    std::vector<std::unique_ptr<RowSource>> sources;
    qint64 length = 0;
    for (const ConditionPtr &member : m_members) {
        Source next = member->source(store, order, limit - length);
        length += next.length;
        sources.push_back(std::move(next.rows));
    }
    return {std::make_unique<ChainedSource>(std::move(sources)), length};
}

bool AnyOf::hasSortedSource(const Order &order) const
{
    return order.isSortedByFirst() && !m_members.empty() && m_members.size() <= MOST_SOURCES
           && std::all_of(m_members.begin(), m_members.end(),
                          [&order](const ConditionPtr &member) { return member->hasSortedSource(order); });
}

std::unique_ptr<RowSource> AnyOf::sortedSource(Store &store, const Order &order) const
{
    std::vector<std::unique_ptr<RowSource>> sources;
    for (const ConditionPtr &member : m_members)
        sources.push_back(member->sortedSource(store, order));
    return std::make_unique<MergedSource>(std::move(sources), order);
}

std::optional<qint64> AnyOf::count(Store &store) const
{
    if (m_members.empty())
        return 0;
    return m_members.size() == 1 ? m_members.front()->count(store) : std::nullopt;
}

ConditionPtr everything()
{
    return std::make_unique<AllOf>(Conditions());
}

ConditionPtr nothing()
{
    return std::make_unique<AnyOf>(Conditions());
}

} // namespace placesd
