// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads comma-separated values (RFC 4180) in UTF-8; semicolons and tabs are accepted as separators too. The first row
/// names the columns: latitude, longitude, altitude, and the properties of a GeoJSON feature. A ReadPlaces.
QString readCsv(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
