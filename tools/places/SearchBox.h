// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Search.h"

namespace tool
{

struct Context;

/// Searches while the user types in a terminal, and writes the place that is chosen. Failed when none is chosen.
ExitStatus searchAsYouType(const SearchOptions &options, Context &context);

} // namespace tool
