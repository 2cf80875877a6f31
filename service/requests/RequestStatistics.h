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

/// How many requests were answered, and which took longest. Safe on any thread, but for countOfLastMinute().
class RequestStatistics
{
public:
    struct Slowest
    {
        int type = 0;                      ///< Message type; 0 for an unknown one, and before the first request.
        std::chrono::microseconds time{0}; ///< From the request's arrival to its reply.
    };

    void record(int type, Clock::duration time);

    [[nodiscard]] std::uint64_t count() const { return m_count; }
    [[nodiscard]] Slowest slowest() const;
    /// Requests in the minute before; to be called every few seconds, by one thread at a time.
    [[nodiscard]] std::uint64_t countOfLastMinute();

private:
    std::atomic<std::uint64_t> m_count{0};
    /// What was counted within the last minute.
    std::deque<std::pair<Clock::time_point, std::uint64_t>> m_counts{{Clock::now(), 0}};
    std::atomic<std::uint64_t> m_slowest{0}; ///< Microseconds above the message type, so that both change at once.
};

} // namespace placesd
