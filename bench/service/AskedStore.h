// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ConcurrentReaders.h"
#include "Postgres.h"
#include "Questions.h"

#include <memory>
#include <vector>

namespace bench
{

/// A store, its service, and all measurements.
struct AskedStore
{
    MadeStore made;
    std::unique_ptr<ServedStore> served = {};
    std::unique_ptr<Questions> questions = {};
    std::vector<Answers> answers = {}; ///< One per query.
    OtherMedians other = {};           ///< Empty without a comparison.
    ReadersOutcome readersAlone = {};
    ReadersOutcome readersBesideWriter = {};
};

} // namespace bench
