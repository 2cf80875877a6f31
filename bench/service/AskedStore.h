// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ConcurrentReaders.h"
#include "Postgres.h"
#include "Questions.h"

#include <memory>
#include <vector>

namespace bench
{

/// A store, the service on it, and all that was measured there.
struct AskedStore
{
    MadeStore made;
    std::unique_ptr<ServedStore> served = {};
    std::unique_ptr<Questions> questions = {};
    std::vector<Answers> answers = {}; ///< One for each question.
    OtherMedians other = {};           ///< Empty where there is nothing to compare with.
    ReadersOutcome readersAlone = {};
    ReadersOutcome readersBesideWriter = {};
};

} // namespace bench
