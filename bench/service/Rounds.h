// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedStore.h"

namespace bench
{

/// Asks every store every question, round by round, so that noise of the machine reaches all rows alike. A question is
/// asked 15 times; up to 300 times where it is fast, less often where 15 times would take more than 15 seconds. The
/// baselines are asked several times in a round.
void ask(std::vector<AskedStore> &stores);

} // namespace bench
