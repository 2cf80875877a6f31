// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Order.h"

#include "places/SortRule.h"
#include "places/Utilities.h"
#include "store/PlaceRow.h"

#include <algorithm>

namespace placesd
{

using orix_places_protocol::SortRuleKind;
using vela::platform::places::Coordinates;
using vela::platform::places::SortField;
using vela::platform::places::SortOrder;
using vela::platform::places::Utilities;

namespace
{

/// Negative for a < b, positive for a > b, else 0.
int compare(const Order::Key::Value &a, const Order::Key::Value &b)
{
    if (a.integer != b.integer)
        return a.integer < b.integer ? -1 : 1;
    if (a.real != b.real)
        return a.real < b.real ? -1 : 1;
    return a.text.compare(b.text);
}

/// Negative when `a` comes first.
int compare(const Order::Key::Value &a, const Order::Key::Value &b, bool isDescending)
{
    if (a.isUnknown != b.isUnknown)
        return a.isUnknown ? 1 : -1;
    return isDescending ? compare(b, a) : compare(a, b);
}

std::size_t valuesOf(const Order::Criterion &criterion)
{
    switch (criterion.by) {
    case Order::By::Id:
        return 0;
    case Order::By::Relevance:
        return 2;
    default:
        return 1;
    }
}

} // namespace

Order::Order(const Sort &sort)
{
    add(sort);
    if (m_criteria.empty())
        m_criteria.push_back({By::Id, sort.order == SortOrder::Descending, {}});
}

void Order::add(const Sort &sort)
{
    Criterion criterion;
    criterion.isDescending = sort.order == SortOrder::Descending;
    m_isUnderstood = m_isUnderstood && (criterion.isDescending || sort.order == SortOrder::Ascending);
    switch (sort.kind) {
    case SortRuleKind::Abstract:
        return;
    case SortRuleKind::Combined:
        for (const Sort &member : sort.members)
            add(member);
        return;
    case SortRuleKind::Distance:
        criterion.by = By::Distance;
        criterion.centre = Coordinates(sort.latitude, sort.longitude);
        // Without a valid centre all distances are equal.
        if (!criterion.centre.isValid())
            return;
        break;
    case SortRuleKind::Simple: {
        constexpr By FIELDS[] = {By::Relevance, By::Name, By::LastUse, By::Creation, By::Update, By::UsageCount};
        if (sort.field < SortField::Relevance || sort.field > SortField::UsageCount)
            m_isUnderstood = false;
        else
            criterion.by = FIELDS[sort.field];
        break;
    }
    default:
        m_isUnderstood = false;
        return;
    }
    // A repeated criterion has no effect.
    const bool isRepeated = std::any_of(m_criteria.begin(), m_criteria.end(), [&criterion](const Criterion &each) {
        return each.by == criterion.by && (criterion.by != By::Distance || each.centre == criterion.centre);
    });
    if (!isRepeated)
        m_criteria.push_back(criterion);
}

void Order::appendValues(const Criterion &criterion, const PlaceRow &row, std::vector<Key::Value> &values)
{
    const auto integer = [&values](qint64 number) { values.push_back({number, 0, {}, false}); };
    switch (criterion.by) {
    case By::Id:
        return;
    case By::Relevance:
        integer(row.usageCount());
        return integer(row.lastUsedTime());
    case By::Name:
        return values.push_back({0, 0, std::string(row.sortKey()), false});
    case By::LastUse:
        return integer(row.lastUsedTime());
    case By::Creation:
        return integer(row.creationTime());
    case By::Update:
        return integer(row.updateTime());
    case By::UsageCount:
        return integer(row.usageCount());
    case By::Distance: {
        const Coordinates position = row.position();
        const bool isKnown = position.isValid();
        const double distance = isKnown ? Utilities::calculateDistanceInMeter(position, criterion.centre) : 0;
        return values.push_back({0, distance, {}, !isKnown});
    }
    }
}

Order::Key Order::keyOf(const PlaceRow &row) const
{
    Key key;
    key.id = row.id();
    key.isStored = row.isStored();
    for (const Criterion &criterion : m_criteria)
        appendValues(criterion, row, key.values);
    return key;
}

bool Order::operator()(const Key &a, const Key &b) const
{
    std::size_t position = 0;
    for (const Criterion &criterion : m_criteria) {
        for (const std::size_t end = position + valuesOf(criterion); position < end; ++position) {
            if (const int result = compare(a.values[position], b.values[position], criterion.isDescending))
                return result < 0;
        }
    }
    if (a.isStored != b.isStored)
        return a.isStored;
    const bool isDescending = first().isDescending && a.isStored;
    return isDescending ? b.id < a.id : a.id < b.id;
}

bool Order::isBeforeAllBehind(const Key &key, const PlaceRow &row) const
{
    std::vector<Key::Value> values;
    appendValues(first(), row, values);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (const int result = compare(key.values[i], values[i], first().isDescending))
            return result < 0;
    }
    return false;
}

} // namespace placesd
