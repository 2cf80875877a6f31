// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedSet.h"

namespace bench
{

/// Prints one row per set: how often the intended place was found, and the time.
void printQuality(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown);

/// Prints one row per set: the time of its queries.
void printTimes(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown);

/// Prints one line per miss, tab-separated: set, typed text, intended place, found place.
void printMisses(const std::vector<AskedSet> &sets);

} // namespace bench
