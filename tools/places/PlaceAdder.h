// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/PlaceReader.h"

#include <places/Error.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tool
{

namespace places = vela::platform::places;

/// Adds the places of a file with several requests in flight, so that they share transactions in the service. Call all
/// functions on one thread; it also creates and destroys the places. Memory use does not depend on the file size.
class PlaceAdder
{
public:
    /// Called with the result of each member, in file order, on the thread that calls add() and finish(). Outcome and
    /// reason are meaningless for a member that is no place. Return false to start no further additions.
    using Settle =
        std::function<bool(const formats::ReadPlace &read, places::Error::Type outcome, const QString &reason)>;

    explicit PlaceAdder(Settle settle);
    /// Waits for the additions in flight.
    ~PlaceAdder();
    PlaceAdder(const PlaceAdder &) = delete;
    PlaceAdder &operator=(const PlaceAdder &) = delete;

    /// Queues a member of the file. Blocks while the queue is full. False when no further members are wanted.
    bool add(formats::ReadPlace read);
    /// Blocks until all queued members are settled.
    void finish();

private:
    struct Item
    {
        formats::ReadPlace read;
        places::Error::Type outcome = places::Error::Success;
        QString reason;
        bool isDone = false;
    };

    void startThread();
    void run();
    /// Settles members from the front of the queue: all that are done, and as many as needed to leave at most `most`.
    void settleUntil(std::size_t most);
    /// Drops all members from the first one whose addition has not started.
    void stop();

    const Settle m_settle;
    std::vector<std::thread> m_threads;
    bool m_isStopped = false;

    std::mutex m_mutex;
    std::condition_variable m_isWork;
    std::condition_variable m_isFrontDone;
    // Guarded by the mutex. An item belongs to the thread that works on it until it is done.
    std::deque<Item> m_items; ///< In the order of the file.
    std::deque<Item *> m_unstarted;
    bool m_isEnded = false;
};

} // namespace tool
