// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads JSON documents of places (places/PlaceJson.h), one a line. The places are new ones: without the numbers, uses
/// and times that the store they come from gave them. A ReadPlaces.
QString readDocuments(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
