// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "requests/Service.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <vector>

namespace placesd
{

class Connection;

/// Connections whose first request waits for a thread of a pool. Users take turns, and those of the open channel have
/// no more than their share of the pool at once. No other thread touches a connection while it is in here. Safe on any
/// thread.
class ConnectionQueue
{
public:
    /// How many requests run at once.
    struct Share
    {
        int ofOpenChannel; ///< All of the open channel together.
        int ofOpenUser;    ///< Those of one user of the open channel.
    };
    explicit ConnectionQueue(Share share)
        : m_share(share)
    {}

    void push(Connection &connection);
    /// Waits for connections and takes up to `most` of those that are there and have their turn, until their requests
    /// have `bytes` together. Empty once stop() was called. Each needs a call of end().
    std::vector<Connection *> pop(std::size_t most, std::size_t bytes);
    /// Takes one connection without waiting; null when none has its turn. It needs a call of end().
    Connection *tryPop();
    /// The request of a connection that was taken no longer runs.
    void end(const Caller &caller);
    /// Ends all waits, now and later. What is still in the queue stays there.
    void stop();

private:
    struct User
    {
        std::deque<Connection *> waiting;
        int running = 0;
    };
    using Users = std::map<Caller, User>;

    /// The user whose turn it is; the end of m_turns when nobody may run a request.
    std::list<Users::iterator>::iterator nextTurn();
    Connection *takeOne();

    const Share m_share;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex.
    Users m_users;
    std::list<Users::iterator> m_turns; ///< Users with waiting connections, in the order of their turns.
    int m_runningOfOpenChannel = 0;
    bool m_isStopped = false;
};

} // namespace placesd
