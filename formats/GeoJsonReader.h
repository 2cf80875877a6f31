// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads the features of GeoJSON (RFC 7946): a FeatureCollection, a Feature, or several such texts one after the other.
/// A ReadPlaces.
QString readGeoJson(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
