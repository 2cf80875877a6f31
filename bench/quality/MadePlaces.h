// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"

#include <cstdint>

namespace bench
{

/// Writes a GeoJSON file of generated places, so that queries for known places have many competitors. The same places,
/// count and seed give the same file.
///
/// A generated place lies near a known one and is less prominent. Its name is that of the known one with half of the
/// rare words, but at least one, crossed: the beginning of one word and the end of another. So the number of
/// different words grows with the number of places, as in real data. One in five has another name; one in twenty is an
/// airport with a code.
void writeMadePlaces(const QString &path, const KnownPlaces &known, int count, std::uint64_t seed);

} // namespace bench
