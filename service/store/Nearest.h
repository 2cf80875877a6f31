// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

namespace vela::platform::places
{
class Coordinates;
}

namespace placesd
{

/// R*Tree boxes are rounded outward to 32-bit floats. The distance to the box of a position has an error below this, in
/// metres, so a row of a walk may be nearer than an earlier row by less than this.
constexpr double NEAREST_SLACK = 5;

/// Registers the R*Tree query nearest(latitude, longitude) on a connection, in degrees. For an R*Tree table with the
/// columns (id, south, north, west, east) in degrees, `WHERE id MATCH nearest(?1, ?2)` returns every row once, nearest
/// first, without ORDER BY. The cost depends on the number of fetched rows. A position out of range fails, but NULL
/// counts as 0, so check it first. Throws SQLite::Exception.
void registerNearest(SQLite::Database &database);

/// The point opposite to a valid position: its nearest first is the farthest first of the position.
vela::platform::places::Coordinates antipodeOf(const vela::platform::places::Coordinates &position);

} // namespace placesd
