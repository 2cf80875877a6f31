// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Connections.h"

#include "Limits.h"
#include "server/Connection.h"

#include <algorithm>

#include <sys/epoll.h>

namespace placesd
{

namespace
{

/// The share of a channel in the available descriptors.
std::size_t connectionsFor(std::size_t most, std::size_t descriptors)
{
    constexpr std::size_t ALL = limits::OWNER_CONNECTIONS + limits::OPEN_CONNECTIONS;
    const std::size_t left = descriptors - std::min(descriptors, limits::RESERVED_DESCRIPTORS);
    return std::max<std::size_t>(1, std::min(most, left * most / ALL));
}

} // namespace

Connections::Connections(int epoll, std::size_t descriptors)
    : m_epoll(epoll)
    , m_channels{{{{connectionsFor(limits::OWNER_CONNECTIONS, descriptors), limits::OWNER_MEMORY},
                   {connectionsFor(limits::OWNER_CONNECTIONS, descriptors), limits::OWNER_MEMORY}},
                  {{connectionsFor(limits::OPEN_CONNECTIONS, descriptors), limits::OPEN_MEMORY},
                   {connectionsFor(limits::OPEN_USER_CONNECTIONS, descriptors), limits::OPEN_USER_MEMORY}}}}
{}

Connections::~Connections() = default;

bool Connections::add(std::unique_ptr<Connection> &connection)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Caller caller = connection->caller();
    Channel &channel = channelOf(caller);
    if (!makeRoom(channel, caller, {1, 0}, closed))
        return false;
    ++channel.used.connections;
    ++channel.users[caller].used.connections;
    const Id id = m_nextId++;
    connection->setId(id);
    m_entries[id].connection = std::move(connection);
    return true;
}

void Connections::watch(Connection &connection, unsigned int events)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Entry &entry = entryOf(connection);
    epoll_event event = {};
    event.events = EPOLLONESHOT | events;
    event.data.u64 = connection.id();
    const int operation = entry.isWatched ? EPOLL_CTL_MOD : EPOLL_CTL_ADD;
    entry.isWatched = true;
    if (::epoll_ctl(m_epoll, operation, connection.fd(), &event) != 0)
        return remove(entry, closed);
    User &user = channelOf(connection.caller()).users[connection.caller()];
    entry.waiting = entry.bytes > 0 ? &user.holding : &user.empty;
    entry.place = entry.waiting->insert(entry.waiting->end(), &entry);
}

Connection *Connections::take(Id id)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto entry = m_entries.find(id);
    if (entry == m_entries.end())
        return nullptr;
    take(entry->second);
    return entry->second.connection.get();
}

void Connections::close(Connection &connection)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    remove(entryOf(connection), closed);
}

void Connections::closeIdle(Clock::time_point time)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto next = m_entries.begin(); next != m_entries.end();) {
        Entry &entry = (next++)->second;
        if (entry.waiting && entry.connection->lastActivity() < time)
            remove(entry, closed);
    }
}

void Connections::closeOldest()
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto channel = m_channels.rbegin(); channel != m_channels.rend() && closed.empty(); ++channel) {
        if (User *user = heaviest(*channel, false))
            closeOne(*user, false, closed);
    }
}

std::size_t Connections::size()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries.size();
}

bool Connections::hold(const Connection &connection, std::size_t bytes)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Entry &entry = entryOf(connection);
    const Caller caller = connection.caller();
    if (bytes > entry.bytes && !makeRoom(channelOf(caller), caller, {0, bytes - entry.bytes}, closed))
        return false;
    setBytes(entry, bytes);
    return true;
}

std::size_t Connections::holdReply(const Connection &connection)
{
    Closed closed;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Entry &entry = entryOf(connection);
    const Caller caller = connection.caller();
    Channel &channel = channelOf(caller);
    makeRoom(channel, caller, {0, limits::REPLY_ROOM_MIN * limits::REPLY_PART}, closed);
    const std::size_t left =
        std::min(channel.all.bytes - channel.used.bytes, channel.ofUser.bytes - channel.users[caller].used.bytes);
    const std::size_t room = std::min(left / limits::REPLY_PART, limits::REPLY_SIZE);
    setBytes(entry, entry.bytes + room);
    return room;
}

Connections::Entry &Connections::entryOf(const Connection &connection)
{
    return m_entries.at(connection.id());
}

void Connections::take(Entry &entry)
{
    if (entry.waiting)
        entry.waiting->erase(entry.place);
    entry.waiting = nullptr;
}

void Connections::remove(Entry &entry, Closed &closed)
{
    take(entry);
    const Caller caller = entry.connection->caller();
    Channel &channel = channelOf(caller);
    setBytes(entry, 0);
    --channel.used.connections;
    const auto user = channel.users.find(caller);
    if (--user->second.used.connections == 0)
        channel.users.erase(user);
    const Id id = entry.connection->id();
    closed.push_back(std::move(entry.connection));
    m_entries.erase(id);
}

bool Connections::makeRoom(Channel &channel, const Caller &caller, Room more, Closed &closed)
{
    const auto fits = [&more](const Room &used, const Room &all) {
        return used.connections + more.connections <= all.connections && used.bytes + more.bytes <= all.bytes;
    };
    const bool isForBytes = more.bytes > 0;
    for (;;) {
        const auto own = channel.users.find(caller);
        const bool isWithinShare = fits(own == channel.users.end() ? Room() : own->second.used, channel.ofUser);
        if (isWithinShare && fits(channel.used, channel.all))
            return true;
        User *from = isWithinShare                ? heaviest(channel, isForBytes)
                     : own == channel.users.end() ? nullptr
                                                  : &own->second;
        if (!from || !closeOne(*from, isForBytes, closed))
            return false;
    }
}

Connections::User *Connections::heaviest(Channel &channel, bool byBytes)
{
    User *most = nullptr;
    const auto amount = [byBytes](const User &user) { return byBytes ? user.used.bytes : user.used.connections; };
    for (auto &[caller, user] : channel.users) {
        const bool canGive = !user.holding.empty() || (!byBytes && !user.empty.empty());
        if (canGive && (!most || amount(user) > amount(*most)))
            most = &user;
    }
    return most;
}

bool Connections::closeOne(User &user, bool onlyHolding, Closed &closed)
{
    const std::list<Entry *> &from = onlyHolding || user.empty.empty() ? user.holding : user.empty;
    if (from.empty())
        return false;
    remove(*from.front(), closed);
    return true;
}

void Connections::setBytes(Entry &entry, std::size_t bytes)
{
    const Caller caller = entry.connection->caller();
    Channel &channel = channelOf(caller);
    for (Room *used : {&channel.used, &channel.users[caller].used})
        used->bytes = used->bytes - entry.bytes + bytes;
    entry.bytes = bytes;
}

} // namespace placesd
