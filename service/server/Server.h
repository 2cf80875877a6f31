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

/// Serves the two channels with three thread pools. Any fast thread takes any connection that has something to do, so a
/// client that is slow or silent delays no other. Slow requests are passed on to a pool of their own, so they only
/// delay each other. Requests that write are passed on to the writer thread; those that wait at the same time share one
/// transaction. The open channel and its users have no more than a share of connections, threads and memory.
class Server
{
public:
    struct Listener
    {
        vela::system::channel::Descriptor socket;
        bool external = false;
        std::string path; ///< Of the socket, which is removed at the end; empty for one that somebody else made.
    };
    /// Starts serving. Throws std::system_error or SQLite::Exception when it cannot.
    Server(std::vector<Listener> listeners, Settings settings);
    /// Finishes the requests at hand and stops. Takes as long as they do: stopDeadline bounds it.
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// Ends the connections that have done nothing for too long. To be called now and then.
    void dropIdleConnections();
    /// What the service holds and did, as one line; -1 places where they cannot be counted. For one thread at a
    /// time.
    std::string state();

private:
    using Descriptor = vela::system::channel::Descriptor;

    void readVocabulary();
    void runFastRequests(Service &service);
    void runSlowRequests(Service &service);
    void runWrites(Service &service);
    void accept(const Listener &listener);
    /// Reports the lack of what a new connection needs, and lets time pass.
    void recoverFromAccept(int error);
    /// Has connections served that the fast threads have time for, until there are none.
    void serveFast(Service &service);
    /// Runs a step of a connection; then closes it, passes it on or has epoll watch it, as the result says.
    void handOn(Connection &connection, const std::function<Connection::Wish()> &step);
    void watch(int fd, unsigned int events, std::uint64_t id);

    std::vector<Listener> m_listeners;
    Descriptor m_epoll;
    Descriptor m_stopEvent;
    Shared m_shared;
    Store m_store; ///< For state().
    std::vector<std::unique_ptr<Service>> m_services;

    Connections m_connections;
    std::atomic<bool> m_isShortOfRoom = false; ///< Logged once between two sweeps.
    ConnectionQueue m_fastRequests;
    ConnectionQueue m_slowRequests;
    ConnectionQueue m_writes;

    std::vector<std::thread> m_threads;
    std::optional<BackgroundJob> m_vocabularyReader;
};

/// Opens the channel `name` for serving, in the folder that takeChannelFolder() took. Throws std::system_error when it
/// cannot, or when something other than a socket is in the way.
Server::Listener listenOn(const std::string &name, bool external, unsigned int mode);

} // namespace placesd
