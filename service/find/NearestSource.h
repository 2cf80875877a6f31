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

/// The stored places with a position, sorted by distance; ties by id in the same direction. A best-first walk of the
/// R*Tree: it takes the nearest of all nodes and places seen so far (G. R. Hjaltason and H. Samet, "Distance browsing
/// in spatial databases", ACM TODS 24 (2), 1999). Farthest first is nearest first from the antipode.
///
/// R*Tree boxes are rounded, so distances to boxes have an error up to NEAREST_SLACK. Exact positions are read only for
/// places whose distances are too close to compare.
class NearestSource : public RowSource
{
public:
    /// @param order by distance; must outlive the source.
    NearestSource(Store &store, const Order::Criterion &order);
    const PlaceRow *next() override;

private:
    /// A node of the R*Tree, or a place in one.
    struct Cell
    {
        double bound; ///< Lower bound of the chord from the start of the walk.
        int level;    ///< Height of a node, 0 for a leaf; PLACE for a place.
        qint64 id;    ///< Id of the place or number of the node.
    };
    /// A place with its exact distance.
    struct Located
    {
        double distance; ///< From the centre, in metres.
        qint64 id;
        double bound; ///< Upper bound of the chord from the start of the walk.
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

    /// Adds the cells of a node to the queue.
    void open(const Cell &node);
    /// Reads the position of a place.
    void locate(const Cell &place);

    const Order::Criterion &m_order;
    const BoxDistance m_distance;
    const StatementPool::Lease m_node;
    LazyRow m_row;
    std::priority_queue<Cell, std::vector<Cell>, IsFarther> m_cells;
    std::priority_queue<Located, std::vector<Located>, IsBehind> m_located;
    std::unordered_set<qint64> m_opened; ///< Visited nodes: a damaged table may contain cycles.
};

} // namespace placesd
