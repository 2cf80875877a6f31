// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads GeoJSON (RFC 7946): a FeatureCollection, a Feature, or a sequence of them. A ReadPlaces.
QString readGeoJson(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
