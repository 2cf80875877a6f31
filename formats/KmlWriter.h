// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes KML 2.2 (OGC 07-147r2): one placemark per place, in a folder named after the place's first tag that is not a
/// platform tag. ExtendedData holds values without a KML element. Placemarks of folders are kept in a temporary file. A
/// MakePlaceWriter.
std::unique_ptr<PlaceWriter> makeKmlWriter(QIODevice &out);

} // namespace formats
