// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedStore.h"

namespace bench
{

/// Runs all queries on all stores, round by round, so that noise of the machine affects all rows alike. A query runs 15
/// times; a fast one up to 300 times, and fewer times when 15 runs would take more than 15 seconds. Baselines run
/// several times per round.
void ask(std::vector<AskedStore> &stores);

} // namespace bench
