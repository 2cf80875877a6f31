// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "requests/Service.h"

namespace placesd
{

/// The whole program: reads its arguments, serves until it is told to stop, and returns its exit status.
/// @param settings what holds where the arguments say nothing else; its providers come behind theirs.
int run(int argc, char **argv, Settings settings = {});

} // namespace placesd
