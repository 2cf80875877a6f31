// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Replaces the clock, the session object, the system log and threads, to simulate their failures.
struct FakeSystem
{
    FakeSystem();
    ~FakeSystem();

    struct Message
    {
        int severity;
        std::string text;
    };

    /// Result of time(); a negative value means the real time.
    static long now;
    /// Text of the session object after the request; null when it cannot be opened.
    static const char *session;
    /// Number of reads and writes of the session object that a signal interrupts.
    static int interruptions;
    /// Maximum number of bytes that a write to the session object accepts.
    static std::size_t acceptedBytes;
    static int sessionReads;
    static std::string sessionRequest;
    static std::vector<Message> messages;
    /// Number of threads that cannot be started.
    static std::atomic<int> refusedThreads;
};
