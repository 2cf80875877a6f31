// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSocketNotifier>

#include <csignal>
#include <functional>
#include <initializer_list>
#include <memory>

namespace tool
{

/// Signals of the operating system as calls in the event loop of this thread. As long as the object lives they do
/// nothing else, neither here nor in threads that are started meanwhile. A signal that the process was started to
/// ignore stays ignored.
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

/// Stops the process as a signal stops it that nobody handles, until it is continued.
void stopBySignal(int signal);

/// Ends the process as a signal would have ended it, so that whoever started it can tell.
[[noreturn]] void endBySignal(int signal);

} // namespace tool
