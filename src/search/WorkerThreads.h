// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>

#include <pthread.h>

namespace vela::platform::places
{

/// A condition variable that says when a wait fails.
class Condition
{
public:
    Condition() = default;
    Condition(const Condition &) = delete;
    Condition &operator=(const Condition &) = delete;
    ~Condition() { pthread_cond_destroy(&m_condition); }

    /// Waits with `held` locked once by the caller. Returns 0 or an error number.
    int wait(pthread_mutex_t *held) { return pthread_cond_wait(&m_condition, held); }
    void broadcast() { pthread_cond_broadcast(&m_condition); }

private:
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
};

/// The two detached threads of an asynchronous manager: how they start, are woken and end. What they do is told by
/// work().
///
/// Shared pointers hold it: the manager's, one for each thread, and one for each call that emits a signal under the
/// lock, since a slot may destroy the manager. So neither mutex nor condition goes before the last one is done with it.
class WorkerThreads : public std::enable_shared_from_this<WorkerThreads>
{
public:
    /// Tells that a wait failed, given the error number.
    struct Reports
    {
        void (*dequeueFailed)(int error);
        void (*closeFailed)(int error);
    };

    /// Holds the queue mutex. It is recursive: a slot that is called under the lock may call back into the manager.
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

    /// Starts the threads, as many of them as the system allows. Called once, by the owner of the shared pointer.
    void start();
    /// Tells the threads that there is work. Called with the lock held.
    void wake() { m_work.broadcast(); }
    /// Tells the threads to end and waits until they have. The lock is let go meanwhile, however often the caller holds
    /// it: a thread may need it to come to its end.
    void close();

protected:
    /// Waits for a job and carries it out, on a worker thread. False when closing.
    virtual bool work() = 0;

    // With the lock held:
    [[nodiscard]] bool isClosing() const { return m_closing; }
    /// Waits to be woken. May return without reason.
    void waitForWork();

private:
    static void *threadEntryPoint(void *argument);
    void onTerminated();
    void waitForTermination();

    const Reports m_reports;
    int m_started = 0; // set before the threads are of use to anyone

    std::recursive_mutex m_mutex;
    // Guarded by the queue mutex:
    Condition m_work;
    int m_depth = 0; // how often it is held
    bool m_closing = false;

    std::mutex m_terminationMutex;
    // Guarded by the termination mutex, which is never taken while the queue mutex is held:
    Condition m_termination;
    int m_terminated = 0;
};

} // namespace vela::platform::places
