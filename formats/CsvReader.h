// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads comma-separated values (RFC 4180), also with other separators, with decimal commas, and in UTF-16 or
/// Windows-1252. The first row names the columns, see columnsOf(). A ReadPlaces.
QString readCsv(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
