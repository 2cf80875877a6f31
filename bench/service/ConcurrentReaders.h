// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Question.h"

namespace bench
{

/// Throughput and latency of eight concurrent readers.
struct ReadersOutcome
{
    Answers reads;
    double readsPerSecond = 0;
    double writesPerSecond = 0; ///< 0 without a writer.
};

/// Eight threads alternately fetch places by id and find recent ones, for a few seconds.
/// @param places ids in the selected service are 1 to this number.
/// @param withWriter whether one more thread counts uses of places.
ReadersOutcome readConcurrently(int places, bool withWriter);

} // namespace bench
