// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Nearest.h"

#include "places/Coordinates.h"
#include "store/BoxDistance.h"

#include <sqlite3.h>

namespace placesd
{

using vela::platform::places::Coordinates;

namespace
{

void deleteDistance(void *distance)
{
    delete static_cast<BoxDistance *>(distance);
}

/// Scores a cell of the R*Tree. SQLite keeps nodes and rows in a priority queue and takes the smallest score first.
/// With a lower bound of the distance as the score, rows come out nearest first: the best-first walk of G. R. Hjaltason
/// and H. Samet, "Distance browsing in spatial databases", ACM TODS 24 (2), 1999.
int scoreCell(sqlite3_rtree_query_info *cell)
{
    if (!cell->pUser) {
        const Coordinates centre = cell->nParam == 2 ? Coordinates(cell->aParam[0], cell->aParam[1]) : Coordinates();
        if (!centre.isValid() || cell->nCoord != 4)
            return SQLITE_ERROR;
        cell->pUser = new BoxDistance(centre); // deleted with the query
        cell->xDelUser = deleteDistance;
    }
    const double *box = cell->aCoord;
    const double score = static_cast<const BoxDistance *>(cell->pUser)->haversineTo(box[0], box[1], box[2], box[3]);
    cell->eWithin = FULLY_WITHIN;
    // Never less than the parent's score, and never NaN for the box of a damaged table.
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
