// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads JSON documents of places (places/PlaceJson.h), one per line, as new places: without ids, use counts and times.
/// A ReadPlaces.
QString readDocuments(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
