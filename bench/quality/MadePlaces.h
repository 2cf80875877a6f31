// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"

#include <cstdint>

namespace bench
{

/// Writes a GeoJSON file of made places, so that questions about known places are asked among many others. The same
/// places, count and seed make the same file.
///
/// A made place lies near a known one and is less known. Its name is that of the known one with half of the rare words,
/// but one at least, crossed: the beginning of one and the end of another. So the number of different words grows with
/// the number of places, as it does in real data. One of five has another name, one of twenty is like a known airport
/// and has a code.
void writeMadePlaces(const QString &path, const KnownPlaces &known, int count, std::uint64_t seed);

} // namespace bench
