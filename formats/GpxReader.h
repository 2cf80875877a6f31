// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads GPX 1.0 and 1.1. Waypoints become places; routes and tracks are handed out as their kinds. A ReadPlaces.
QString readGpx(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
