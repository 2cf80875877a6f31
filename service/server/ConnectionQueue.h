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

/// Queue of connections whose first request waits for a thread of a pool. Users take turns, and those of the open
/// channel have only their share of the pool. No other thread touches a queued connection. Thread-safe.
class ConnectionQueue
{
public:
    /// Maximum number of requests that run at the same time.
    struct Share
    {
        int ofOpenChannel; ///< All users of the open channel together.
        int ofOpenUser;    ///< One user of the open channel.
    };
    explicit ConnectionQueue(Share share)
        : m_share(share)
    {}

    void push(Connection &connection);
    /// Blocks for connections, then takes up to `most` of those whose turn it is, until their requests reach `bytes` in
    /// total. Empty after stop(). Call end() for each.
    std::vector<Connection *> pop(std::size_t most, std::size_t bytes);
    /// Takes one connection without blocking; null when none has its turn. Call end() for it.
    Connection *tryPop();
    /// Ends the request of a connection that was taken.
    void end(const Caller &caller);
    /// Ends all current and future waits. Queued connections stay in the queue.
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
    std::list<Users::iterator> m_turns; ///< Users with queued connections, in the order of their turns.
    int m_runningOfOpenChannel = 0;
    bool m_isStopped = false;
};

} // namespace placesd
