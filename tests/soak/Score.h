// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "soak/Disturbance.h"

#include <atomic>
#include <cstdio>

/// What a soak counts. Safe on any thread.
struct Score
{
    Disturbance outage;   ///< The service was killed and is not up again.
    Disturbance stall;    ///< The service is stopped by a signal.
    Disturbance fullDisk; ///< No file of the service may grow.

    std::atomic<unsigned> kills{0};
    std::atomic<unsigned> stalls{0};
    std::atomic<unsigned> fullDisks{0};
    std::atomic<unsigned> acknowledged{0}; ///< Changes.
    std::atomic<unsigned> lost{0};         ///< Acknowledged changes.
    std::atomic<unsigned> wrong{0};        ///< Answers that are no consequence of a disturbance or of what was stored.
    std::atomic<unsigned> unanswered{0};   ///< Requests during an outage.
    std::atomic<unsigned> refused{0};      ///< Changes on a full disk.
    std::atomic<unsigned> hostile{0};      ///< Requests.
    std::atomic<unsigned> slowest{0};      ///< Answer to an honest client outside outages and stalls, in milliseconds.
    std::atomic<unsigned> memory{0};       ///< Most that the service had, in megabytes.

    void print() const
    {
        std::printf(
            "%u kills, %u stalls, %u full disks; %u acknowledged changes, %u lost; %u wrong answers, %u requests "
            "unanswered by a killed service, %u changes refused on a full disk; %u hostile requests; slowest "
            "honest request %u ms; peak memory %u MB\n",
            kills.load(), stalls.load(), fullDisks.load(), acknowledged.load(), lost.load(), wrong.load(),
            unanswered.load(), refused.load(), hostile.load(), slowest.load(), memory.load());
        std::fflush(stdout);
    }
};

/// Keeps the larger of two values.
inline void raise(std::atomic<unsigned> &most, unsigned value)
{
    for (unsigned before = most; before < value && !most.compare_exchange_weak(before, value);) {
    }
}
