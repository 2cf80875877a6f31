// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <places/Coordinates.h>

namespace tool
{

/// Finds the position that the user means: one that is written as such, or that of a stored place by its number or
/// name. Failed, and says so, when there is none or a name may mean several.
ExitStatus findCentre(const QString &centre, places::Coordinates &position);

} // namespace tool
