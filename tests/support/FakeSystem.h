// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
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
    static inline long now = -1;
    /// Text of the session object after the request; null when it cannot be opened.
    static inline const char *session = nullptr;
    /// Number of reads and writes of the session object that a signal interrupts.
    static inline int interruptions = 0;
    /// Maximum number of bytes that a write to the session object accepts.
    static inline std::size_t acceptedBytes = SIZE_MAX;
    static inline int sessionReads = 0;
    static inline std::string sessionRequest;
    static inline std::vector<Message> messages;
    /// Number of threads that cannot be started.
    static inline std::atomic<int> refusedThreads = 0;
};
