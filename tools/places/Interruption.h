// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

namespace tool
{

/// Notes that SIGINT or SIGTERM came, for work that ends in good order. As long as the object lives these signals do
/// nothing else but end a system call that waits, and standard input: nothing waits for more of it. A signal that the
/// process was started to ignore stays ignored. One object at a time.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    /// The signal that came; 0 when none did.
    [[nodiscard]] static int signal();
    /// Has the signals come to other threads than the calling one.
    static void leaveToOtherThreads();

private:
    struct sigaction m_before[2] = {};
};

} // namespace tool
