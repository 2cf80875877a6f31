// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Stands in for the clock, the session object, the system log and the system's threads where they fail.
struct FakeSystem
{
    FakeSystem();
    ~FakeSystem();

    struct Message
    {
        int severity;
        std::string text;
    };

    /// What time() answers; below 0 the real time.
    static long now;
    /// The text of the session object behind the request slot; without one it cannot be opened.
    static const char *session;
    /// Number of reads and writes of the session object that a signal interrupts.
    static int interruptions;
    /// Most bytes that a write to the session object takes.
    static std::size_t acceptedBytes;
    static int sessionReads;
    static std::string sessionRequest;
    static std::vector<Message> messages;
    /// Number of threads that cannot be started.
    static std::atomic<int> refusedThreads;
};
