// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "soak/Disturbance.h"

#include <atomic>
#include <cstdio>

/// Counters of a soak test. Safe on any thread.
struct Score
{
    Disturbance outage;   ///< The service was killed and is not running again.
    Disturbance fullDisk; ///< No file of the service can grow.

    std::atomic<unsigned> kills{0};
    std::atomic<unsigned> stalls{0};
    std::atomic<unsigned> fullDisks{0};
    std::atomic<unsigned> acknowledged{0}; ///< Changes.
    std::atomic<unsigned> lost{0};         ///< Acknowledged changes.
    std::atomic<unsigned> wrong{0};        ///< Answers that neither a disturbance nor the stored places explain.
    std::atomic<unsigned> unanswered{0};   ///< Requests during an outage.
    std::atomic<unsigned> refused{0};      ///< Changes on a full disk.
    std::atomic<unsigned> hostile{0};      ///< Requests.

    void print() const
    {
        std::printf(
            "%u kills, %u stalls, %u full disks; %u acknowledged changes, %u lost; %u wrong answers, %u requests "
            "unanswered by a killed service, %u changes refused on a full disk; %u hostile requests\n",
            kills.load(), stalls.load(), fullDisks.load(), acknowledged.load(), lost.load(), wrong.load(),
            unanswered.load(), refused.load(), hostile.load());
        std::fflush(stdout);
    }
};
