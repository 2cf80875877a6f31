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

/// Adds the places of a file with several additions in flight, so that they share the service's transactions. Its
/// functions are for one thread, which also makes the places and destroys them; memory does not grow with the file.
class PlaceAdder
{
public:
    /// Takes what became of one member, in the order of the file, on the thread that calls add() and finish(). The
    /// outcome, and the service's reason for it, say nothing about a member that is no place. Returns false to start no
    /// further additions.
    using Settle =
        std::function<bool(const formats::ReadPlace &read, places::Error::Type outcome, const QString &reason)>;

    explicit PlaceAdder(Settle settle);
    /// Waits for the additions in flight.
    ~PlaceAdder();
    PlaceAdder(const PlaceAdder &) = delete;
    PlaceAdder &operator=(const PlaceAdder &) = delete;

    /// Queues a member of the file, and waits while too many are queued. False when no further ones are wanted.
    bool add(formats::ReadPlace read);
    /// Waits until everything that was queued is settled.
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
    /// Settles members from the front of the queue until at most `most` are left, and all that are done.
    void settleUntil(std::size_t most);
    /// Drops the members from the first one on whose addition has not started.
    void stop();

    const Settle m_settle;
    std::vector<std::thread> m_threads;
    bool m_isStopped = false;

    std::mutex m_mutex;
    std::condition_variable m_isWork;
    std::condition_variable m_isFrontDone;
    // Guarded by the mutex; an item itself belongs to the thread that works on it until it is done.
    std::deque<Item> m_items; ///< In the order of the file.
    std::deque<Item *> m_unstarted;
    bool m_isEnded = false;
};

} // namespace tool
