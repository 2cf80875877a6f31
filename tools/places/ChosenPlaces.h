// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceChoice.h"
#include "Report.h"

#include <vector>

namespace tool
{

/// Puts the numbers of the chosen places into `ids`: those that were named, or those that are found. Failed, and says
/// so, when none is found.
ExitStatus collectChosen(const PlaceChoice &choice, std::vector<qint64> &ids);

/// Writes places by their numbers. Failed, and says so, when one is not there.
/// @param hasMore true when there are more of them.
ExitStatus listPlaces(const std::vector<qint64> &ids, bool hasMore, const ListForm &form);

/// Writes the chosen places as `places find` does. Failed, and says so, when one that was named is not there or none is
/// found.
ExitStatus listChosen(const PlaceChoice &choice, Form form);

} // namespace tool
