// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <functional>
#include <initializer_list>
#include <memory>

namespace tool
{

/// Handles signals in the event loop of this thread. While the object exists, they have no other effect, neither on
/// this thread nor on threads started in the meantime. A signal that was ignored at the start of the process stays
/// ignored.
class Signals
{
public:
    using Handle = std::function<void(int signal)>;

    Signals(std::initializer_list<int> signals, const Handle &handle);
    Signals(const Signals &) = delete;
    Signals &operator=(const Signals &) = delete;
    ~Signals();

private:
    sigset_t m_before = {};
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// Stops the process like an unhandled stop signal, until it is continued.
void stopBySignal(int signal);

/// Ends the process with the signal, so that the parent process sees it.
[[noreturn]] void endBySignal(int signal);

} // namespace tool
