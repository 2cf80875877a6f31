// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "requests/Service.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace placesd
{

class Connection;

/// Owns all open connections and manages their shares of descriptors and of memory for messages. Each channel has its
/// own room, and a user of the open channel gets only a share of it. When room runs out, a connection of the user with
/// the most is closed: the one that has been idle longest. Thread-safe.
class Connections
{
public:
    using Id = std::uint64_t;
    /// Smaller numbers are other events of the same epoll.
    static constexpr Id FIRST_ID = 1024;

    /// @param epoll reports events of the connections by their ids. Must outlive this object.
    /// @param descriptors maximum number of open files of this process.
    Connections(int epoll, std::size_t descriptors);
    ~Connections();

    /// Takes ownership of a new connection, which the caller's thread then uses. Returns false and leaves it to the
    /// caller when there is no room.
    bool add(std::unique_ptr<Connection> &connection);
    /// Lets epoll watch a connection for its next event; take() then gives it out. Closes it when epoll fails.
    void watch(Connection &connection, unsigned int events);
    /// The connection of an event, which the caller's thread then uses; null when it was closed.
    Connection *take(Id id);
    void close(Connection &connection);
    /// Closes connections that wait for their clients and have been idle since `time`.
    void closeIdle(Clock::time_point time);
    /// Closes the connection that has been idle longest: one of the open channel if there is any. Called when
    /// descriptors run out.
    void closeOldest();

    [[nodiscard]] std::size_t size();

    /// Changes the number of bytes that a connection holds. False, without a change, when there is no room.
    bool hold(const Connection &connection, std::size_t bytes);
    /// Reserves memory for one reply: a part of what the user has left. Returns the number of bytes.
    std::size_t holdReply(const Connection &connection);

private:
    struct Room
    {
        std::size_t connections = 0;
        std::size_t bytes = 0;
    };
    struct Entry
    {
        std::unique_ptr<Connection> connection;
        std::size_t bytes = 0;
        bool isWatched = false;                ///< Whether it is registered with epoll.
        std::list<Entry *> *waiting = nullptr; ///< The list that contains it; null while a thread uses it.
        std::list<Entry *>::iterator place;    ///< Position in this list.
    };
    struct User
    {
        // Connections that wait for their clients, the longest wait first.
        std::list<Entry *> empty;
        std::list<Entry *> holding; ///< Waiting connections that hold bytes.
        Room used;
    };
    struct Channel
    {
        Room all;
        Room ofUser;
        Room used = {};
        std::map<Caller, User> users = {};
    };
    /// Closed connections; their memory is freed after the unlock.
    using Closed = std::list<std::unique_ptr<Connection>>;

    Channel &channelOf(const Caller &caller) { return m_channels[caller.external ? 1 : 0]; }
    Entry &entryOf(const Connection &connection);
    void take(Entry &entry);
    void remove(Entry &entry, Closed &closed);
    void setBytes(Entry &entry, std::size_t bytes);
    /// The user with the most bytes or connections among those with a connection that can be closed. Null when there is
    /// none.
    static User *heaviest(Channel &channel, bool byBytes);
    /// Closes connections until `more` fits the channel and the caller's share. False when it does not fit.
    bool makeRoom(Channel &channel, const Caller &caller, Room more, Closed &closed);
    bool closeOne(User &user, bool onlyHolding, Closed &closed);

    const int m_epoll;
    std::mutex m_mutex;
    // Guarded by the mutex. A connection itself belongs to the thread that took it.
    std::array<Channel, 2> m_channels; ///< The owner's channel, then the open one.
    std::unordered_map<Id, Entry> m_entries;
    Id m_nextId = FIRST_ID;
};

} // namespace placesd
