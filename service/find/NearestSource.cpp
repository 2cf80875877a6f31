// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/NearestSource.h"

#include "find/FindSql.h"
#include "places/Utilities.h"
#include "store/Nearest.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <QtCore/QtEndian>

#include <cmath>
#include <cstring>
#include <limits>

#include <sqlite3.h>

namespace placesd
{

using vela::platform::places::Coordinates;
using vela::platform::places::Utilities;

namespace
{

// Distances of a walk are chords in units of the Earth's diameter. They need no inverse function, and a chord is never
// longer than its arc.
constexpr double LEAST_DIAMETER = 12.7e6; // metres; the Earth has more
constexpr double SLACK = NEAREST_SLACK / LEAST_DIAMETER;

// Layout of an R*Tree node as documented by SQLite: depth of the tree (root only), number of cells, and the cells with
// an id and four coordinates each. All numbers are big-endian.
constexpr std::size_t COUNT_AT = 2;
constexpr std::size_t HEADER_SIZE = 4;
constexpr std::size_t CELL_SIZE = 24;
constexpr qint64 ROOT_NODE = 1;

double coordinateAt(const char *box, int position)
{
    float value = 0;
    const auto bits = qFromBigEndian<quint32>(box + position * static_cast<int>(sizeof value));
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    return static_cast<double>(value);
}

} // namespace

NearestSource::NearestSource(Store &store, const Order::Criterion &order)
    : m_order(order)
    , m_distance(order.isDescending ? antipodeOf(order.centre) : order.centre)
    , m_node(store.statements().take(find_sql::SELECT_NODE))
    , m_row(store)
    , m_located(IsBehind{order.isDescending})
{
    m_cells.push({0, 0, ROOT_NODE});
}

bool NearestSource::IsBehind::operator()(const Located &a, const Located &b) const
{
    const Located &first = isDescending ? b : a;
    const Located &second = isDescending ? a : b;
    return first.distance != second.distance ? first.distance > second.distance : first.id > second.id;
}

const PlaceRow *NearestSource::next()
{
    for (;;) {
        const double nearest = m_cells.empty() ? std::numeric_limits<double>::infinity() : m_cells.top().bound;
        if (!m_located.empty() && m_located.top().bound < nearest) {
            m_row.moveTo(m_located.top().id);
            m_located.pop();
            return &m_row;
        }
        if (m_cells.empty())
            return nullptr;
        const Cell cell = m_cells.top();
        m_cells.pop();
        if (cell.level != PLACE) {
            open(cell);
        } else if (m_located.empty() && (m_cells.empty() || cell.bound + 2 * SLACK < m_cells.top().bound)) {
            m_row.moveTo(cell.id);
            return &m_row;
        } else {
            locate(cell);
        }
    }
}

void NearestSource::open(const Cell &node)
{
    if (!m_opened.insert(node.id).second)
        return;
    m_node->reset();
    m_node->bind(1, static_cast<int64_t>(node.id));
    const std::string_view data = m_node->executeStep() ? viewOf(m_node->getColumn(0)) : std::string_view();
    const bool hasHeader = data.size() >= HEADER_SIZE;
    const std::size_t cells = hasHeader ? qFromBigEndian<quint16>(data.data() + COUNT_AT) : 0;
    if (!hasHeader || cells > (data.size() - HEADER_SIZE) / CELL_SIZE)
        throw SQLite::Exception("a node of the R*Tree is damaged", SQLITE_CORRUPT);
    const int level = node.id == ROOT_NODE ? qFromBigEndian<quint16>(data.data()) : node.level;
    for (std::size_t i = 0; i < cells; ++i) {
        const char *cell = data.data() + HEADER_SIZE + i * CELL_SIZE;
        const char *box = cell + sizeof(qint64);
        const double chord = std::sqrt(m_distance.haversineTo(coordinateAt(box, 0), coordinateAt(box, 1),
                                                              coordinateAt(box, 2), coordinateAt(box, 3)));
        // Never NaN, even for the box of a damaged table.
        m_cells.push({chord > SLACK ? chord - SLACK : 0, level - 1, qFromBigEndian<qint64>(cell)});
    }
}

void NearestSource::locate(const Cell &place)
{
    m_row.moveTo(place.id);
    const Coordinates position = m_row.position();
    // A damaged table may lack it.
    if (position.isValid())
        m_located.push(
            {Utilities::calculateDistanceInMeter(position, m_order.centre), place.id, place.bound + 2 * SLACK});
}

} // namespace placesd
