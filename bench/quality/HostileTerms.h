// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"

#include <vector>

namespace bench
{

/// Terms that cost a search most: long ones, many words, wrong words, broken text. No place is meant by them; each set
/// is of one kind.
std::vector<QuestionSet> hostileTerms(const KnownPlaces &places, std::uint64_t seed);

} // namespace bench
