// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes places as waypoints of GPX 1.1, with extensions for properties without an element. Places without a position
/// are left out. A MakePlaceWriter.
std::unique_ptr<PlaceWriter> makeGpxWriter(QIODevice &out);

} // namespace formats
