// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads the waypoints of GPX 1.0 and 1.1; routes and tracks are skipped. A ReadPlaces.
QString readGpx(Input &input, const ReadOptions &options, const TakePlace &take);

/// Reads the placemarks of KML 2.2 (OGC 07-147r2) that are points, in all folders. A ReadPlaces.
QString readKml(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
