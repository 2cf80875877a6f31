// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads the placemarks of KML 2.2 (OGC 07-147r2). Folders become tags. Lines, areas and tracks are handed out as their
/// kinds; links to other files are reported. A ReadPlaces.
QString readKml(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
