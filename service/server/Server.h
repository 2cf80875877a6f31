// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "server/Connection.h"
#include "server/ConnectionQueue.h"
#include "server/Connections.h"
#include "sources/BackgroundJob.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace placesd
{

/// Serves both channels with three thread pools. A fast thread takes any connection that is ready, so a slow or silent
/// client delays no other client. Slow requests run in their own pool, so they only delay each other. Requests that
/// write run on the writer thread; those that wait at the same time share one transaction. The open channel and its
/// users have only a share of connections, threads and memory.
class Server
{
public:
    struct Listener
    {
        vela::system::channel::Descriptor socket;
        bool external = false;
        std::string path; ///< Path of the socket to remove at the end; empty for an inherited socket.
    };
    /// Starts the threads. Throws std::system_error or SQLite::Exception.
    Server(std::vector<Listener> listeners, Settings settings);
    /// Finishes running requests and stops; stopDeadline limits the time.
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// Closes connections that have been idle too long. Call it periodically.
    void dropIdleConnections();
    /// Counters of the service as one line; -1 places when they cannot be counted. Call it from one thread at a time.
    std::string state();

private:
    using Descriptor = vela::system::channel::Descriptor;

    void readVocabulary();
    void runFastRequests(Service &service);
    void runSlowRequests(Service &service);
    void runWrites(Service &service);
    void accept(const Listener &listener);
    /// Logs the lack of a resource for a new connection, and pauses.
    void recoverFromAccept(int error);
    /// Lets the fast threads run queued requests until there are none.
    void serveFast(Service &service);
    /// Runs a step of a connection; then closes it, passes it on or lets epoll watch it, by the result.
    void handOn(Connection &connection, const std::function<Connection::Wish()> &step);
    void watch(int fd, unsigned int events, std::uint64_t id);

    std::vector<Listener> m_listeners;
    Descriptor m_epoll;
    Descriptor m_stopEvent;
    Shared m_shared;
    Store m_store; ///< For state().
    std::vector<std::unique_ptr<Service>> m_services;

    Connections m_connections;
    std::atomic<bool> m_isShortOfRoom = false; ///< Logged once per check for idle connections.
    ConnectionQueue m_fastRequests;
    ConnectionQueue m_slowRequests;
    ConnectionQueue m_writes;

    std::vector<std::thread> m_threads;
    std::optional<BackgroundJob> m_vocabularyReader;
};

/// Opens the channel `name` for listening, in the folder locked by takeChannelFolder(). Throws std::system_error, also
/// when the path exists and is not a socket.
Server::Listener listenOn(const std::string &name, bool external, unsigned int mode);

} // namespace placesd
