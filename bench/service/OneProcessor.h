// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sched.h>

namespace bench
{

/// Keeps the calling thread, and the threads and processes that it starts, on one processor. A time then says how long
/// the work takes, and not on which processors the scheduler places client and service, which differs from run to run.
class OneProcessor
{
public:
    OneProcessor();
    OneProcessor(const OneProcessor &) = delete;
    OneProcessor &operator=(const OneProcessor &) = delete;
    /// Gives the calling thread, and what it starts from now on, all its processors back.
    ~OneProcessor();

private:
    cpu_set_t m_before = {};
};

} // namespace bench
