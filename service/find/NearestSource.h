// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Order.h"
#include "find/RowSource.h"
#include "store/BoxDistance.h"
#include "store/LazyRow.h"

#include <queue>
#include <unordered_set>
#include <vector>

namespace placesd
{

/// The stored places that have a position, in the order of a distance, ties by id in its direction. It walks the
/// R*Tree best first: what is nearest of all nodes and places seen so far comes next (G. R. Hjaltason and H. Samet,
/// "Distance browsing in spatial databases", ACM TODS 24 (2), 1999). Farthest first is nearest first from the antipode.
///
/// The boxes of the R*Tree are rounded, so a box tells a distance within NEAREST_SLACK. The position itself is read
/// only of places that are too close to one another for that.
class NearestSource : public RowSource
{
public:
    /// @param order by distance; outlives the source.
    NearestSource(Store &store, const Order::Criterion &order);
    const PlaceRow *next() override;

private:
    /// A node of the R*Tree, or a place in one.
    struct Cell
    {
        double bound; ///< Chord from the start of the walk, at least.
        int level;    ///< Of a node, 0 for a leaf; PLACE for a place.
        qint64 id;    ///< Of the place, or the number of the node.
    };
    /// A place whose position was read.
    struct Located
    {
        double distance; ///< From the centre, in metres.
        qint64 id;
        double bound; ///< Chord from the start of the walk, at most.
    };
    static constexpr int PLACE = -1;
    struct IsFarther
    {
        bool operator()(const Cell &a, const Cell &b) const { return a.bound > b.bound; }
    };
    struct IsBehind
    {
        bool operator()(const Located &a, const Located &b) const;
        bool isDescending;
    };

    /// Adds what is in a node.
    void open(const Cell &node);
    /// Reads the position of a place.
    void locate(const Cell &place);

    const Order::Criterion &m_order;
    const BoxDistance m_distance;
    const StatementPool::Lease m_node;
    LazyRow m_row;
    std::priority_queue<Cell, std::vector<Cell>, IsFarther> m_cells;
    std::priority_queue<Located, std::vector<Located>, IsBehind> m_located;
    std::unordered_set<qint64> m_opened; ///< Nodes: a damaged table may have cycles.
};

} // namespace placesd
