// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "search/WorkerThreads.h"

#include <QtCore/QList>
#include <QtCore/QMap>

#include <algorithm>
#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace vela::platform::places
{

/// The jobs of an asynchronous manager, from the call to the signal with the answer. A job that is dropped at any stage
/// is never answered.
/// @tparam Job a copyable value with a member `int id`, set by the queue.
/// @tparam Answer result of a job; default-constructed, it is a failure.
template <typename Job, typename Answer>
class WorkerQueue : public WorkerThreads
{
public:
    /// Runs a job on a worker thread without a lock. It must not use the manager, which may be destroyed.
    using CarryOut = void (*)(const Job &job, Answer &answer);
    /// Sends the answer to the manager's thread. Called on a worker thread with the lock held, never after close().
    /// True when it was sent. It may move from the answer.
    using Send = std::function<bool(const Job &job, Answer &answer)>;

    WorkerQueue(const Reports &reports, CarryOut carryOut, Send send)
        : WorkerThreads(reports)
        , m_carryOut(carryOut)
        , m_send(std::move(send))
    {}

    // With the lock held:
    /// Adds a job for the workers; call wake() afterwards. Returns its id.
    int add(Job job) { return append(m_ready, std::move(job)); }
    /// The same for a job that runs after all earlier ordered ones, one at a time.
    int addOrdered(Job job) { return append(m_ordered, std::move(job)); }
    /// Delays a job until releaseDelayed().
    int delay(Job job) { return append(m_delayed, std::move(job)); }
    void releaseDelayed()
    {
        m_ready += std::exchange(m_delayed, {});
        wake();
    }
    template <typename Predicate>
    void drop(Predicate isDropped)
    {
        const auto dropFrom = [&](auto &jobs) {
            for (auto job = jobs.begin(); job != jobs.end();)
                job = isDropped(*job) ? jobs.erase(job) : job + 1;
        };
        dropFrom(m_ready);
        dropFrom(m_ordered);
        dropFrom(m_delayed);
        dropFrom(m_inFlight);
        for (std::optional<Job> &job : m_sent) {
            if (job && isDropped(*job))
                job.reset();
        }
    }
    void clear()
    {
        drop([](const Job &) { return true; });
    }
    /// True when a matching job is not run yet.
    template <typename Predicate>
    [[nodiscard]] bool hasPending(Predicate isMeant) const
    {
        const auto anyOf = [&](const auto &jobs) { return std::any_of(jobs.begin(), jobs.end(), isMeant); };
        return anyOf(m_ready) || anyOf(m_ordered) || anyOf(m_delayed) || anyOf(m_inFlight);
    }
    /// True when a job waits for a worker or is running; delayed jobs and answers in flight do not count.
    [[nodiscard]] bool isBusy() const { return !m_ready.isEmpty() || !m_ordered.isEmpty() || !m_inFlight.isEmpty(); }

    /// Call it in the manager's thread for each answer that arrives. False when its job was dropped.
    bool arrived()
    {
        const Lock lock(*this);
        const bool wanted = m_sent.front().has_value();
        m_sent.pop_front();
        return wanted;
    }

    /// Drops all jobs and ends the workers.
    void close()
    {
        const Lock lock(*this);
        clear();
        WorkerThreads::close();
    }
    /// The same, but runs waiting ordered jobs that can start within `time`, without answers. Returns the number of
    /// jobs that were not run.
    int finish(std::chrono::milliseconds time)
    {
        const Lock lock(*this);
        const QList<Job> ordered = std::exchange(m_ordered, {});
        clear();
        m_ordered = ordered;
        m_finishEnd = Clock::now() + time;
        WorkerThreads::close();
        return static_cast<int>(std::exchange(m_ordered, {}).size());
    }

private:
    using Clock = std::chrono::steady_clock;

    int append(QList<Job> &jobs, Job job)
    {
        job.id = ++m_lastId;
        jobs.append(job);
        return job.id;
    }

    bool work() override
    {
        try {
            Job job;
            if (!dequeue(job))
                return false;
            Answer answer;
            attempt(job, answer);
            dataAvailable(job, answer);
        } catch (const std::exception &) {
            // Out of memory for the answer: drop it. Ending the process would not help.
        }
        return true;
    }

    bool dequeue(Job &job)
    {
        const Lock lock(*this);
        while (!isClosing() && !hasWork())
            waitForWork();
        if (!hasWork() || (isClosing() && Clock::now() >= m_finishEnd))
            return false;
        const bool isOrdered = hasOrderedWork();
        QList<Job> &jobs = isOrdered ? m_ordered : m_ready;
        job = jobs.first();
        if (!isClosing()) // otherwise no answer is needed
            m_inFlight.insert(job.id, job);
        jobs.removeFirst();
        if (isOrdered)
            m_runningOrdered = job.id;
        return true;
    }
    bool hasOrderedWork() const { return m_runningOrdered == 0 && !m_ordered.isEmpty(); }
    bool hasWork() const { return hasOrderedWork() || !m_ready.isEmpty(); }

    /// After an exception the answer stays a failure.
    void attempt(const Job &job, Answer &answer)
    {
        try {
            m_carryOut(job, answer);
        } catch (const std::exception &) {
        }
    }

    void dataAvailable(const Job &job, Answer &answer)
    {
        const Lock lock(*this);
        if (m_runningOrdered == job.id)
            m_runningOrdered = 0;
        if (m_inFlight.remove(job.id) != 0 && m_send(job, answer))
            m_sent.push_back(job);
    }

    const CarryOut m_carryOut;
    const Send m_send;

    // Guarded by the queue mutex:
    int m_lastId = 0;
    QList<Job> m_ready;
    QList<Job> m_ordered;
    int m_runningOrdered = 0; ///< Includes a dropped job: the next one waits until its call returns.
    QList<Job> m_delayed;
    QMap<int, Job> m_inFlight;
    std::deque<std::optional<Job>> m_sent; // in the order of arrival; empty for a dropped job
    Clock::time_point m_finishEnd = Clock::time_point::min();
};

} // namespace vela::platform::places
