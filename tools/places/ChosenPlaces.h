// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceChoice.h"
#include "Report.h"

#include <vector>

namespace tool
{

/// Puts the ids of the chosen places into `ids`: the given ids, or those that the conditions find. Failed with a
/// message when none is found.
ExitStatus collectChosen(const PlaceChoice &choice, std::vector<qint64> &ids);

/// Writes places by their ids. Failed with a message when one does not exist.
/// @param hasMore true when there are more results.
ExitStatus listPlaces(const std::vector<qint64> &ids, bool hasMore, const ListForm &form);

/// Writes the chosen places as `places find` does. Failed with a message when a given id does not exist or nothing is
/// found.
ExitStatus listChosen(const PlaceChoice &choice, Form form);

} // namespace tool
