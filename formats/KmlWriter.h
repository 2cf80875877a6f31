// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes KML 2.2 (OGC 07-147r2): a placemark a place, in a folder of the first tag that is its user's own. What KML
/// has no element for stands in ExtendedData. Placemarks of folders wait in a temporary file. A MakePlaceWriter.
std::unique_ptr<PlaceWriter> makeKmlWriter(QIODevice &out);

} // namespace formats
