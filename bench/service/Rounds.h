// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Questions.h"

#include <memory>
#include <vector>

namespace bench
{

/// A store that is asked, and how it answered each question so far.
struct AskedStore
{
    std::unique_ptr<ServedStore> served;
    std::unique_ptr<Questions> questions;
    std::vector<Answers> answers = {};
};

/// Asks every store every question, round by round, so that noise of the machine reaches all rows alike. A question is
/// asked 15 times; up to 300 times where it is fast, less often where 15 times would take more than 15 seconds.
void ask(std::vector<AskedStore> &stores);

} // namespace bench
