// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedSet.h"

namespace bench
{

/// Prints one row for each set: how often what was meant was found, and how long that took.
void printQuality(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown);

/// Prints one row for each set: how long its questions took.
void printTimes(const std::vector<AskedSet> &sets, const ShownGroups &groups, bool asMarkdown);

/// Prints a line for each miss, with tabs between the set, what was typed, what was meant and what was found.
void printMisses(const std::vector<AskedSet> &sets);

} // namespace bench
