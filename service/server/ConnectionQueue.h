// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

namespace placesd
{

class Connection;

/// Connections whose first request waits for a thread of another pool, in the order of their arrival. No other thread
/// touches a connection while it is in here. Safe on any thread.
class ConnectionQueue
{
public:
    void push(Connection &connection);
    /// Waits for connections and takes up to `most` of those that are there. Empty once stop() was called.
    std::vector<Connection *> pop(std::size_t most);
    /// Ends all waits, now and later. What is still in the queue stays there.
    void stop();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex.
    std::deque<Connection *> m_connections;
    bool m_isStopped = false;
};

} // namespace placesd
