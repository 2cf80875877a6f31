// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>

#include <pthread.h>

namespace vela::platform::places
{

/// A condition variable that reports failures.
class Condition
{
public:
    Condition() = default;
    Condition(const Condition &) = delete;
    Condition &operator=(const Condition &) = delete;
    ~Condition() { pthread_cond_destroy(&m_condition); }

    /// Waits; the caller holds `held`, locked once. Returns 0 or an error number.
    int wait(pthread_mutex_t *held) { return pthread_cond_wait(&m_condition, held); }
    void broadcast() { pthread_cond_broadcast(&m_condition); }

private:
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
};

/// The two detached threads of an asynchronous manager: start, wake-up and end. work() defines their task.
///
/// Held by shared pointers: the manager's, one per thread, and one per call that emits a signal under the lock, because
/// a slot may destroy the manager. So mutexes and conditions live until their last use.
class WorkerThreads : public std::enable_shared_from_this<WorkerThreads>
{
public:
    /// Reports a failed wait with its error number.
    struct Reports
    {
        void (*dequeueFailed)(int error);
        void (*closeFailed)(int error);
    };

    /// Locks the queue mutex. It is recursive: a slot called under the lock may call the manager.
    class Lock
    {
    public:
        explicit Lock(WorkerThreads &threads);
        Lock(const Lock &) = delete;
        Lock &operator=(const Lock &) = delete;
        ~Lock();

    private:
        WorkerThreads &m_threads;
    };

    explicit WorkerThreads(const Reports &reports)
        : m_reports(reports)
    {}
    WorkerThreads(const WorkerThreads &) = delete;
    WorkerThreads &operator=(const WorkerThreads &) = delete;
    virtual ~WorkerThreads();

    /// Starts the threads, or as many as the system allows. Called once, by the owner of the shared pointer.
    void start();
    /// Wakes the threads. Called with the lock held.
    void wake() { m_work.broadcast(); }
    /// Ends the threads and waits for them. Releases the lock meanwhile, also a recursive one, because the threads need
    /// it to end.
    void close();

protected:
    /// Waits for a job and runs it, on a worker thread. False when closing.
    virtual bool work() = 0;

    // With the lock held:
    [[nodiscard]] bool isClosing() const { return m_closing; }
    /// Waits for wake(). Spurious wake-ups are possible.
    void waitForWork();

private:
    static void *threadEntryPoint(void *argument);
    void onTerminated();
    void waitForTermination();

    const Reports m_reports;
    int m_started = 0; // set before other threads use the object

    std::recursive_mutex m_mutex;
    // Guarded by the queue mutex:
    Condition m_work;
    int m_depth = 0; // recursion depth
    bool m_closing = false;

    std::mutex m_terminationMutex;
    // Guarded by the termination mutex, which is never taken while the queue mutex is held:
    Condition m_termination;
    int m_terminated = 0;
};

} // namespace vela::platform::places
