// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/BackgroundJob.h"

namespace placesd
{

BackgroundJob::BackgroundJob(std::function<void()> job)
    : m_job(std::move(job))
    , m_thread([this] { loop(); })
{}

BackgroundJob::~BackgroundJob()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void BackgroundJob::runAgain()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isWanted = true;
    }
    m_changed.notify_all();
}

void BackgroundJob::loop()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isWanted || m_isStopping; });
        if (m_isStopping)
            return;
        m_isWanted = false;
        lock.unlock();
        m_job();
        lock.lock();
    }
}

} // namespace placesd
