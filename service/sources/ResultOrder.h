// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "sources/PlaceProvider.h"

#include <string>

namespace placesd
{

struct IndexRow;

/// Sort values of a result. Values that the order does not use are equal for all results.
struct Ranked
{
    double distance = 0; ///< Metres; negative for farthest first.
    std::string name;    ///< Sort key.
    int64_t id = 0;
};

/// The order of results that match equally well; ties by id.
class ResultOrder
{
public:
    /// @param centre for orders by distance, and for Relevance, which puts the nearest first. When it is invalid, these
    /// orders sort by id, that is, by prominence.
    ResultOrder(SearchOrder order, const vela::platform::places::Coordinates &centre);

    [[nodiscard]] SearchOrder order() const { return m_order; }
    [[nodiscard]] const vela::platform::places::Coordinates &centre() const { return m_centre; }
    [[nodiscard]] bool isByName() const;
    [[nodiscard]] bool isByDistance() const;

    /// Rank of a row of the index.
    [[nodiscard]] Ranked rank(const IndexRow &row) const;
    /// True when `a` comes before `b`.
    bool operator()(const Ranked &a, const Ranked &b) const;
    /// Lower bound of all later rows of a walk in this order that has given `last`.
    [[nodiscard]] Ranked passedAt(const Ranked &last) const;

private:
    SearchOrder m_order;
    vela::platform::places::Coordinates m_centre;
};

} // namespace placesd
