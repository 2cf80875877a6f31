// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Interruption.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace tool
{

namespace
{

constexpr int SIGNALS[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t received = 0;
int emptyFile = -1;

/// Replaces standard input as well: a read that starts after the signal would otherwise block.
void note(int signal)
{
    const int error = errno;
    received = signal;
    ::dup2(emptyFile, STDIN_FILENO);
    errno = error;
}

} // namespace

Interruption::Interruption()
{
    received = 0;
    emptyFile = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    struct sigaction action = {};
    action.sa_handler = note;
    sigemptyset(&action.sa_mask);
    for (int i = 0; i < 2; ++i) {
        ::sigaction(SIGNALS[i], nullptr, &m_before[i]);
        if (m_before[i].sa_handler != SIG_IGN)
            ::sigaction(SIGNALS[i], &action, nullptr);
    }
}

Interruption::~Interruption()
{
    for (int i = 0; i < 2; ++i)
        ::sigaction(SIGNALS[i], &m_before[i], nullptr);
    ::close(emptyFile);
}

int Interruption::signal()
{
    return received;
}

void Interruption::leaveToOtherThreads()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : SIGNALS)
        sigaddset(&set, signal);
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

} // namespace tool
