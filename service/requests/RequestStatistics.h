// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <utility>

namespace placesd
{

/// Counts answered requests and keeps the slowest one. Thread-safe, except countOfLastMinute().
class RequestStatistics
{
public:
    struct Slowest
    {
        int type = 0;                      ///< Message type; 0 for an unknown type and before the first request.
        std::chrono::microseconds time{0}; ///< From the arrival of the request to its reply.
    };

    void record(int type, Clock::duration time);

    [[nodiscard]] std::uint64_t count() const { return m_count; }
    [[nodiscard]] Slowest slowest() const;
    /// Requests in the last minute. Call it every few seconds, from one thread at a time.
    [[nodiscard]] std::uint64_t countOfLastMinute();

private:
    std::atomic<std::uint64_t> m_count{0};
    /// Earlier counts of the last minute.
    std::deque<std::pair<Clock::time_point, std::uint64_t>> m_counts{{Clock::now(), 0}};
    std::atomic<std::uint64_t> m_slowest{0}; ///< Microseconds in the upper bits, message type in the lower bits, for
                                             ///< one atomic update.
};

} // namespace placesd
