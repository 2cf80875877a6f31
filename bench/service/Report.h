// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedStore.h"

namespace bench
{

/// Prints how a store answered: each question with its limits, then what the store takes on the disk, and what many
/// readers get at once.
/// @param smaller a smaller store, which growth is measured from; null for none.
void printReport(const AskedStore &store, const AskedStore *smaller, bool asMarkdown);

} // namespace bench
