// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes comma-separated values (RFC 4180) in UTF-8, always with the same columns: id, name, position, properties, and
/// the rest as JSON. Texts are written unchanged, even when a spreadsheet would take them for formulas. A
/// MakePlaceWriter.
std::unique_ptr<PlaceWriter> makeCsvWriter(QIODevice &out);

} // namespace formats
