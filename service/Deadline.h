// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace placesd
{

using Clock = std::chrono::steady_clock;
/// The time by which the work on a request must end.
using Deadline = Clock::time_point;

/// Deadline of all work in this process after a stop signal.
inline std::atomic<Deadline> stopDeadline{Deadline::max()};
static_assert(std::atomic<Deadline>::is_always_lock_free, "a signal handler sets it");

inline bool hasPassed(Deadline deadline)
{
    return Clock::now() > std::min(deadline, stopDeadline.load(std::memory_order_relaxed));
}

/// Waits until `isDone` holds, the deadline passes, or the service stops. Returns whether `isDone` holds.
template <typename Predicate>
bool waitUntil(std::condition_variable &changed, std::unique_lock<std::mutex> &lock, Deadline deadline,
               const Predicate &isDone)
{
    constexpr std::chrono::milliseconds CHECK_INTERVAL{100};
    while (!isDone() && !hasPassed(deadline))
        changed.wait_until(lock, std::min(deadline, Clock::now() + CHECK_INTERVAL));
    return isDone();
}

} // namespace placesd
