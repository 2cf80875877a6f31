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

/// All connections that are open, and their shares of the room for connections and of the memory for messages on their
/// way. Each channel has room of its own, and a user of the open channel has no more than a share of it. Where room is
/// missing, a connection of the user who has most is closed: the one that has waited longest for its client. Safe on
/// any thread.
class Connections
{
public:
    using Id = std::uint64_t;
    /// Smaller numbers mark other events of the same epoll.
    static constexpr Id FIRST_ID = 1024;

    /// @param epoll reports the events of the connections by their ids. It outlives this object.
    /// @param descriptors the number of files that this process may have open.
    Connections(int epoll, std::size_t descriptors);
    ~Connections();

    /// Takes over a new connection, which belongs to the caller's thread. Leaves it where it is, and returns false,
    /// when there is no room.
    bool add(std::unique_ptr<Connection> &connection);
    /// Lets epoll watch a connection for its next event, which take() gives it out for. Closes it when epoll cannot.
    void watch(Connection &connection, unsigned int events);
    /// The connection that an event is for, which belongs to the caller's thread from now on; null when it was closed.
    Connection *take(Id id);
    void close(Connection &connection);
    /// Closes the connections that wait for their clients and did nothing since `time`.
    void closeIdle(Clock::time_point time);
    /// Closes the connection of the open channel, else of the other one, that has waited longest. For a lack of
    /// descriptors.
    void closeOldest();

    [[nodiscard]] std::size_t size();

    /// Changes the number of bytes that a connection holds. False, and nothing has changed, when there is no room.
    bool hold(const Connection &connection, std::size_t bytes);
    /// Adds to what a connection holds as much as one reply may take: a part of what its user has left. Returns the
    /// number of bytes.
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
        bool isWatched = false;                ///< Whether epoll knows it.
        std::list<Entry *> *waiting = nullptr; ///< The list that it is in; null while it belongs to a thread.
        std::list<Entry *>::iterator place;    ///< In that list.
    };
    struct User
    {
        // Connections that wait for their clients, for the longest time first.
        std::list<Entry *> empty;
        std::list<Entry *> holding; ///< Those that hold bytes.
        Room used;
    };
    struct Channel
    {
        Room all;
        Room ofUser;
        Room used = {};
        std::map<Caller, User> users = {};
    };
    /// Closed connections, whose memory is freed when the lock is open again.
    using Closed = std::list<std::unique_ptr<Connection>>;

    Channel &channelOf(const Caller &caller) { return m_channels[caller.external ? 1 : 0]; }
    Entry &entryOf(const Connection &connection);
    void take(Entry &entry);
    void remove(Entry &entry, Closed &closed);
    void setBytes(Entry &entry, std::size_t bytes);
    /// The user with the most bytes or connections, of those with a connection to close for it. Null when there is
    /// none.
    static User *heaviest(Channel &channel, bool byBytes);
    /// Closes connections until `more` fits the channel and the share of the caller. False when it cannot.
    bool makeRoom(Channel &channel, const Caller &caller, Room more, Closed &closed);
    bool closeOne(User &user, bool onlyHolding, Closed &closed);

    const int m_epoll;
    std::mutex m_mutex;
    // Guarded by the mutex; a connection itself belongs to the thread that took it.
    std::array<Channel, 2> m_channels; ///< Of the owner, and the open one.
    std::unordered_map<Id, Entry> m_entries;
    Id m_nextId = FIRST_ID;
};

} // namespace placesd
