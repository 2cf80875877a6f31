// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

namespace tool
{

/// Records SIGINT and SIGTERM, for work that must finish cleanly. While the object exists, these signals only interrupt
/// a blocking system call and end standard input, so that nothing waits for more input. A signal that was ignored at
/// the start of the process stays ignored. One object at a time.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// The received signal; 0 for none.
    [[nodiscard]] static int signal();
    /// Blocks the signals in the calling thread, so that other threads receive them.
    static void leaveToOtherThreads();

private:
    struct sigaction m_before[2] = {};
};

} // namespace tool
