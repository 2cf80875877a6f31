// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads GPX 1.0 and 1.1. Waypoints become places; a route or track is handed out as its kind. A ReadPlaces.
QString readGpx(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
