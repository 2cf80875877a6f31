// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sched.h>

namespace bench
{

/// Restricts the calling thread, and the threads and processes that it starts, to one processor. Times then do not
/// depend on how the scheduler distributes client and service over processors, which differs between runs.
class OneProcessor
{
public:
    OneProcessor();
    OneProcessor(const OneProcessor &) = delete;
    OneProcessor &operator=(const OneProcessor &) = delete;
    /// Restores all processors for the calling thread and its future children.
    ~OneProcessor();

private:
    cpu_set_t m_before = {};
};

} // namespace bench
