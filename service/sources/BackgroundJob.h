// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace placesd
{

/// Runs a job on its own thread: once at the start, and again on each request. Requests during a run cause one more
/// run. Thread-safe.
class BackgroundJob
{
public:
    /// @param job must not throw.
    explicit BackgroundJob(std::function<void()> job);
    /// Waits for the end of the current run.
    ~BackgroundJob();
    BackgroundJob(const BackgroundJob &) = delete;
    BackgroundJob &operator=(const BackgroundJob &) = delete;

    void runAgain();

private:
    void loop();

    const std::function<void()> m_job;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex.
    bool m_isWanted = true;
    bool m_isStopping = false;

    std::thread m_thread;
};

} // namespace placesd
