// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/ConnectionQueue.h"

#include "server/Connection.h"

#include <algorithm>

namespace placesd
{

void ConnectionQueue::push(Connection &connection)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto user = m_users.try_emplace(connection.caller()).first;
        if (user->second.waiting.empty())
            m_turns.push_back(user);
        user->second.waiting.push_back(&connection);
    }
    m_changed.notify_one();
}

std::list<ConnectionQueue::Users::iterator>::iterator ConnectionQueue::nextTurn()
{
    return std::find_if(m_turns.begin(), m_turns.end(), [this](const Users::iterator &user) {
        return !user->first.external
               || (m_runningOfOpenChannel < m_share.ofOpenChannel && user->second.running < m_share.ofOpenUser);
    });
}

Connection *ConnectionQueue::takeOne()
{
    const auto turn = nextTurn();
    if (turn == m_turns.end())
        return nullptr;
    const Users::iterator next = *turn;
    User &user = next->second;
    Connection *connection = user.waiting.front();
    user.waiting.pop_front();
    ++user.running;
    if (next->first.external)
        ++m_runningOfOpenChannel;
    if (user.waiting.empty())
        m_turns.erase(turn);
    else
        m_turns.splice(m_turns.end(), m_turns, turn);
    return connection;
}

Connection *ConnectionQueue::tryPop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isStopped ? nullptr : takeOne();
}

std::vector<Connection *> ConnectionQueue::pop(std::size_t most, std::size_t bytes)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isStopped || nextTurn() != m_turns.end(); });
    std::vector<Connection *> taken;
    std::size_t size = 0;
    while (!m_isStopped && taken.size() < most && size < bytes) {
        Connection *connection = takeOne();
        if (!connection)
            break;
        size += connection->requestSize();
        taken.push_back(connection);
    }
    return taken;
}

void ConnectionQueue::end(const Caller &caller)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto user = m_users.find(caller);
        --user->second.running;
        if (caller.external)
            --m_runningOfOpenChannel;
        if (user->second.running == 0 && user->second.waiting.empty())
            m_users.erase(user);
    }
    m_changed.notify_one();
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
