// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Nearest.h"

#include "places/Coordinates.h"
#include "places/Utilities.h"

#include <QtCore/QtMath>

#include <algorithm>
#include <cmath>

#include <sqlite3.h>

namespace placesd
{

using vela::platform::places::Coordinates;
using vela::platform::places::Utilities;

namespace
{

/// One walk, nearest first. The R*Tree keeps a priority queue of nodes and rows by score and always goes on with the
/// smallest. With a lower bound of the distance as the score, rows come out nearest first: the best-first walk of
/// G. R. Hjaltason and H. Samet, "Distance browsing in spatial databases", ACM TODS 24 (2), 1999.
class Walk
{
public:
    explicit Walk(const Coordinates &centre)
        : m_latitude(centre.latitude())
        , m_longitude(centre.longitude())
        , m_sine(std::sin(qDegreesToRadians(centre.latitude())))
        , m_cosine(std::cos(qDegreesToRadians(centre.latitude())))
    {}

    /// How far the nearest point of a box is from the centre, as the haversine of the angle: it grows with the distance
    /// and takes no inverse function. NaN when a corner is. West is at most east.
    [[nodiscard]] double haversineTo(double south, double north, double west, double east) const
    {
        // The box of a position is no larger than what rounding makes it.
        if (north - south < POINT_SIZE && east - west < POINT_SIZE)
            return haversineTo((south + north) / 2, m_longitude - (west + east) / 2);
        const double width = east - west;
        double fromWest = std::remainder(m_longitude - west, 360);
        if (fromWest < 0)
            fromWest += 360;
        // In a damaged table south may be above north.
        if (fromWest <= width)
            return haversineTo(std::max(south, std::min(m_latitude, north)), 0);
        // At any latitude the distance grows with the difference of longitude, so the nearer edge is enough.
        const double difference = std::min(360 - fromWest, fromWest - width);
        return haversineTo(nearestLatitude(qDegreesToRadians(difference), south, north), difference);
    }

private:
    static constexpr double POINT_SIZE = 1e-4; // degrees; 32-bit floats are 1.5e-5 apart at most

    [[nodiscard]] double haversineTo(double latitude, double longitudes) const
    {
        const auto haversine = [](double degrees) {
            const double sine = std::sin(qDegreesToRadians(degrees) / 2);
            return sine * sine;
        };
        return haversine(latitude - m_latitude)
               + m_cosine * std::cos(qDegreesToRadians(latitude)) * haversine(longitudes);
    }

    /// Latitude of the nearest point between two latitudes of a meridian. By the spherical law of cosines, with the
    /// centre's latitude c and the difference of longitude l, the distance d to the latitude p is
    ///     cos d = sin c sin p + cos c cos p cos l = A cos(p - q),  q = atan2(sin c, cos c cos l),  A >= 0.
    [[nodiscard]] double nearestLatitude(double difference, double south, double north) const
    {
        const double best = qRadiansToDegrees(std::atan2(m_sine, m_cosine * std::cos(difference)));
        if (best >= south && best <= north)
            return best;
        const auto closeness = [best](double latitude) { return std::cos(qDegreesToRadians(latitude - best)); };
        return closeness(south) > closeness(north) ? south : north;
    }

    const double m_latitude;
    const double m_longitude;
    const double m_sine;
    const double m_cosine;
};

void deleteWalk(void *walk)
{
    delete static_cast<Walk *>(walk);
}

/// Scores one cell of the R*Tree.
int scoreCell(sqlite3_rtree_query_info *cell)
{
    if (!cell->pUser) {
        const Coordinates centre = cell->nParam == 2 ? Coordinates(cell->aParam[0], cell->aParam[1]) : Coordinates();
        if (!centre.isValid() || cell->nCoord != 4)
            return SQLITE_ERROR;
        cell->pUser = new Walk(centre); // deleted with the query
        cell->xDelUser = deleteWalk;
    }
    const double *box = cell->aCoord;
    const double score = static_cast<Walk *>(cell->pUser)->haversineTo(box[0], box[1], box[2], box[3]);
    cell->eWithin = FULLY_WITHIN;
    // Never less than the parent's, and never NaN where the box of a damaged table is.
    cell->rScore = score > cell->rParentScore ? score : cell->rParentScore;
    return SQLITE_OK;
}

} // namespace

void registerNearest(SQLite::Database &database)
{
    sqlite3 *handle = database.getHandle();
    if (const int code = sqlite3_rtree_query_callback(handle, "nearest", scoreCell, nullptr, nullptr))
        throw SQLite::Exception(handle, code);
}

Coordinates antipodeOf(const Coordinates &position)
{
    const double longitude = position.longitude();
    return Coordinates(-position.latitude(), longitude > 0 ? longitude - 180 : longitude + 180);
}

} // namespace placesd
