// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "sources/PlaceProvider.h"

#include <string>

namespace placesd
{

struct IndexRow;

/// A place among the results of a search. What the order does not compare is the same for all.
struct Ranked
{
    double distance = 0; ///< Metres; negative where the farthest comes first.
    std::string name;    ///< Sort key.
    int64_t id = 0;
};

/// The order of the results that fit a search equally well; ties by id.
class ResultOrder
{
public:
    /// @param centre for orders by distance, and for Relevance, which gives the nearest first; where it is invalid,
    /// these go by id, so the best known comes first.
    ResultOrder(SearchOrder order, const vela::platform::places::Coordinates &centre);

    [[nodiscard]] SearchOrder order() const { return m_order; }
    [[nodiscard]] const vela::platform::places::Coordinates &centre() const { return m_centre; }
    [[nodiscard]] bool isByName() const;
    [[nodiscard]] bool isByDistance() const;

    /// Rank of a row of the index.
    [[nodiscard]] Ranked rank(const IndexRow &row) const;
    /// True when `a` comes before `b`.
    bool operator()(const Ranked &a, const Ranked &b) const;
    /// What a walk in this order has passed for good when it gives `last`: no later row ranks before this.
    [[nodiscard]] Ranked passedAt(const Ranked &last) const;

private:
    SearchOrder m_order;
    vela::platform::places::Coordinates m_centre;
};

} // namespace placesd
