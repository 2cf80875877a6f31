// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Signals.h"

#include "Report.h"

#include <cstdlib>

#include <sys/signalfd.h>
#include <unistd.h>

namespace tool
{

namespace
{

bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

Signals::Signals(std::initializer_list<int> signals, const Handle &handle)
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals) {
        if (!isIgnored(signal))
            sigaddset(&set, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &set, &m_before);
    m_descriptor = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [descriptor = m_descriptor, handle] {
                         signalfd_siginfo info = {};
                         while (::read(descriptor, &info, sizeof info) == sizeof info)
                             handle(static_cast<int>(info.ssi_signo));
                     });
}

Signals::~Signals()
{
    m_notifier.reset();
    ::close(m_descriptor);
    ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void stopBySignal(int signal)
{
    sigset_t set;
    sigset_t before;
    sigemptyset(&set);
    sigaddset(&set, signal);
    const auto handler = std::signal(signal, SIG_DFL);
    std::raise(signal);
    ::pthread_sigmask(SIG_UNBLOCK, &set, &before); // the process stops here
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(signal, handler);
}

void endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::quick_exit(Interrupted + signal); // reached when the signal does not end the process, for example process 1 of
                                           // a container
}

} // namespace tool
