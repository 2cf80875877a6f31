// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "search/WorkerThreads.h"

#include "protocol/Logger.h"

#include <utility>

namespace vela::platform::places
{

namespace
{

constexpr int WORKERS = 2;

} // namespace

WorkerThreads::Lock::Lock(WorkerThreads &threads)
    : m_threads(threads)
{
    m_threads.m_mutex.lock();
    ++m_threads.m_depth;
}

WorkerThreads::Lock::~Lock()
{
    --m_threads.m_depth;
    m_threads.m_mutex.unlock();
}

WorkerThreads::~WorkerThreads() = default;

void WorkerThreads::start()
{
    for (int i = 0; i < WORKERS; ++i) {
        auto self = std::make_unique<std::shared_ptr<WorkerThreads>>(shared_from_this());
        pthread_t thread = {};
        const int error = pthread_create(&thread, nullptr, threadEntryPoint, self.get());
        if (error != 0) {
            Logger::error("WorkerThreads: a thread cannot be started, error %d", error);
            continue;
        }
        static_cast<void>(self.release()); // owned by the thread
        pthread_detach(thread);
        ++m_started;
    }
}

void *WorkerThreads::threadEntryPoint(void *argument)
{
    const std::unique_ptr<std::shared_ptr<WorkerThreads>> self(static_cast<std::shared_ptr<WorkerThreads> *>(argument));
    while ((*self)->work()) {
    }
    (*self)->onTerminated();
    return nullptr;
}

void WorkerThreads::waitForWork()
{
    const int depth = std::exchange(m_depth, 0);
    const int error = m_work.wait(m_mutex.native_handle());
    m_depth = depth;
    if (error != 0)
        m_reports.dequeueFailed(error);
}

void WorkerThreads::onTerminated()
{
    const std::lock_guard<std::mutex> lock(m_terminationMutex);
    ++m_terminated;
    m_termination.broadcast();
}

void WorkerThreads::close()
{
    const Lock lock(*this);
    m_closing = true;
    m_work.broadcast();

    const int depth = std::exchange(m_depth, 0);
    for (int i = 0; i < depth; ++i)
        m_mutex.unlock();
    waitForTermination();
    for (int i = 0; i < depth; ++i)
        m_mutex.lock();
    m_depth = depth;
}

void WorkerThreads::waitForTermination()
{
    const std::lock_guard<std::mutex> lock(m_terminationMutex);
    while (m_terminated < m_started) {
        if (const int error = m_termination.wait(m_terminationMutex.native_handle()); error != 0) {
            m_reports.closeFailed(error);
            return;
        }
    }
}

} // namespace vela::platform::places
