// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ResultOrder.h"

#include "places/Utilities.h"
#include "sources/IndexRow.h"
#include "store/Nearest.h"

namespace placesd
{

using vela::platform::places::Coordinates;
using vela::platform::places::Utilities;

ResultOrder::ResultOrder(SearchOrder order, const Coordinates &centre)
    : m_order(order)
    , m_centre(centre)
{}

bool ResultOrder::isByName() const
{
    return m_order == SearchOrder::Name || m_order == SearchOrder::NameBackwards;
}

bool ResultOrder::isByDistance() const
{
    return !isByName() && m_centre.isValid();
}

Ranked ResultOrder::rank(const IndexRow &row) const
{
    if (isByName())
        return {0, std::string(row.sortKey), row.id};
    if (!isByDistance())
        return {0, {}, row.id};
    const double distance = Utilities::calculateDistanceInMeter(Coordinates(row.latitude, row.longitude), m_centre);
    return {m_order == SearchOrder::FarFirst ? -distance : distance, {}, row.id};
}

bool ResultOrder::operator()(const Ranked &a, const Ranked &b) const
{
    if (a.distance != b.distance)
        return a.distance < b.distance;
    if (const int difference = a.name.compare(b.name); difference != 0)
        return m_order == SearchOrder::NameBackwards ? difference > 0 : difference < 0;
    return a.id < b.id;
}

Ranked ResultOrder::passedAt(const Ranked &last) const
{
    if (isByDistance())
        return {last.distance - NEAREST_SLACK, {}, 0};
    return {last.distance, last.name, last.id + 1};
}

} // namespace placesd
