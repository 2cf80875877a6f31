// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/PlaceReader.h"
#include "MemberImporter.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tool
{

/// Stores the members of a file with several requests in flight, so that they share transactions in the service. A
/// member that may be the same place as an earlier one waits for it. Call all functions on one thread; it also creates
/// and destroys the places. Memory use does not depend on the file size.
class PlaceAdder
{
public:
    /// Called with the result of each member, in file order, on the thread that calls add() and finish(). The result is
    /// undefined for a member that is not a place. Return false to start no further members.
    using Settle = std::function<bool(const formats::ReadPlace &read, const MemberResult &result)>;

    /// @param importer must outlive the object.
    PlaceAdder(const MemberImporter &importer, Settle settle);
    /// Waits for the members in flight.
    ~PlaceAdder();
    PlaceAdder(const PlaceAdder &) = delete;
    PlaceAdder &operator=(const PlaceAdder &) = delete;

    /// Queues a member of the file. Blocks while the queue is full. False when `settle` stopped the import.
    bool add(formats::ReadPlace read);
    /// Blocks until all queued members are settled.
    void finish();
    /// Drops the members that are not in flight; they are never settled.
    void stop();

private:
    enum class Stage
    {
        Waiting, ///< For earlier members, or for a thread.
        InFlight,
        Done,
        Dropped,
    };
    struct Item
    {
        formats::ReadPlace read;
        MemberKey key = {};
        MemberResult result = {};
        Stage stage = Stage::Waiting;
        int earlier = 0;                    ///< Number of members that it waits for.
        std::vector<Item *> followers = {}; ///< Members that wait for it.
    };

    void startThread();
    void run();
    /// Makes an item wait for earlier items that may be the same place.
    void follow(Item &item);
    void complete(Item &item);
    /// Settles members from the front of the queue: all that are done, and as many as needed to leave at most `most`.
    void settleUntil(std::size_t most);

    const MemberImporter &m_importer;
    const Settle m_settle;
    std::vector<std::thread> m_threads;
    bool m_isStopped = false;

    std::mutex m_mutex;
    std::condition_variable m_isWork;
    std::condition_variable m_isFrontDone;
    // Guarded by the mutex. A place belongs to the thread that works on it until its item is done.
    std::deque<Item> m_items; ///< In file order.
    std::deque<Item *> m_ready;
    bool m_isEnded = false;
};

} // namespace tool
