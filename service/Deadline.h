// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

namespace placesd
{

using Clock = std::chrono::steady_clock;
/// When the work on a request has to be over.
using Deadline = Clock::time_point;

inline bool hasPassed(Deadline deadline)
{
    return Clock::now() > deadline;
}

} // namespace placesd
