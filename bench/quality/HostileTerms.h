// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"

#include <vector>

namespace bench
{

/// The most expensive terms for a search: long ones, many words, wrong words, invalid text. No place is intended. Each
/// set has one kind of terms.
std::vector<QuestionSet> hostileTerms(const KnownPlaces &places, std::uint64_t seed);

} // namespace bench
