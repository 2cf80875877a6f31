// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Postgres.h"
#include "Rounds.h"

namespace bench
{

/// Prints how a store answered: each question with its limits, then what the store takes on the disk, and what many
/// readers get at once.
/// @param smaller the same questions to a smaller store, which growth is measured from; null for none.
/// @param other empty where there is nothing to compare with.
void printReport(const AskedStore &store, const AskedStore *smaller, const OtherMedians &other, bool asMarkdown);

} // namespace bench
