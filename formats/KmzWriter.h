// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes KMZ: a zip archive of the file doc.kml that makeKmlWriter() describes. A MakePlaceWriter.
std::unique_ptr<PlaceWriter> makeKmzWriter(QIODevice &out);

} // namespace formats
