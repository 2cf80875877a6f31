// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedStore.h"

namespace bench
{

/// Prints the results of a store: each query with its limits, the size on the disk, and the throughput of many readers.
/// @param smaller a smaller store, for measuring growth; null for none.
void printReport(const AskedStore &store, const AskedStore *smaller, bool asMarkdown);

} // namespace bench
