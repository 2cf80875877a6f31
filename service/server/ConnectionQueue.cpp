// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/ConnectionQueue.h"

#include <algorithm>

namespace placesd
{

void ConnectionQueue::push(Connection &connection)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_connections.push_back(&connection);
    }
    m_changed.notify_one();
}

std::vector<Connection *> ConnectionQueue::pop(std::size_t most)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopped || !m_connections.empty(); });
    if (m_isStopped)
        return {};
    const auto count = static_cast<std::ptrdiff_t>(std::min(most, m_connections.size()));
    std::vector<Connection *> taken(m_connections.begin(), m_connections.begin() + count);
    m_connections.erase(m_connections.begin(), m_connections.begin() + count);
    return taken;
}

void ConnectionQueue::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopped = true;
    }
    m_changed.notify_all();
}

} // namespace placesd
