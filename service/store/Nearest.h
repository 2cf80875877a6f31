// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

namespace vela::platform::places
{
class Coordinates;
}

namespace placesd
{

/// R*Tree boxes are rounded outward to 32-bit floats. The box of a position tells its distance within this many metres,
/// and a row of a walk may be nearer than a row before it, by less than that.
constexpr double NEAREST_SLACK = 5;

/// Adds to a connection the R*Tree query nearest(latitude, longitude), in degrees. For an R*Tree table with the columns
/// (id, south, north, west, east) in degrees, `WHERE id MATCH nearest(?1, ?2)` gives every row once, nearest first,
/// without an ORDER BY. The cost follows the rows that are fetched. A position out of range is an error of the
/// statement, but NULL is 0, so callers check first. Throws SQLite::Exception.
void registerNearest(SQLite::Database &database);

/// The point opposite to a valid position: farthest first from a position is nearest first from its antipode.
vela::platform::places::Coordinates antipodeOf(const vela::platform::places::Coordinates &position);

} // namespace placesd
