// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "requests/Service.h"

namespace placesd
{

/// Runs the program: parses the arguments, serves until it must stop, and returns the exit status.
/// @param settings defaults for the arguments; their providers come after those of the arguments.
int run(int argc, char **argv, Settings settings = {});

} // namespace placesd
