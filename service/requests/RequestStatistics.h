// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <atomic>
#include <chrono>
#include <cstdint>

namespace placesd
{

/// How many requests were answered, and which took longest. Safe on any thread.
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

private:
    std::atomic<std::uint64_t> m_count{0};
    std::atomic<std::uint64_t> m_slowest{0}; ///< Microseconds above the message type, so that both change at once.
};

} // namespace placesd
