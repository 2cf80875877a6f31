// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Server.h"

#include "Limits.h"
#include "Log.h"
#include "protocol/ProtocolTypes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace placesd
{

namespace channel = vela::system::channel;
using orix_places_protocol::ReturnCode;

namespace
{

/// A client sends its request right after it connects; waiting this long for it saves a turn through epoll.
constexpr int FIRST_REQUEST_WAIT_MS = 1;

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// Runs the first requests of connections in one transaction and keeps their replies back. False when none of it is
/// stored.
bool answerTogether(const std::vector<Connection *> &group, Service &service)
{
    auto next = group.begin();
    return service.writeTogether(group.front()->deadline(), [&] {
        (*next)->answerFirst(service);
        return ++next != group.end();
    });
}

} // namespace

Server::Server(std::vector<Listener> listeners, Settings settings)
    : m_listeners(std::move(listeners))
    , m_epoll(::epoll_create1(EPOLL_CLOEXEC))
    , m_stopEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_shared(std::move(settings))
{
    if (!m_epoll.isOpen() || !m_stopEvent.isOpen())
        fail("cannot watch sockets");
    watch(m_stopEvent.get(), EPOLLIN, this);
    for (Listener &listener : m_listeners)
        watch(listener.socket.get(), EPOLLIN | EPOLLEXCLUSIVE, &listener);
    constexpr struct
    {
        Pool pool;
        int threads;
        void (Server::*run)(Service &);
    } POOLS[] = {{Pool::Fast, limits::FAST_THREADS, &Server::runFastRequests},
                 {Pool::Slow, limits::SLOW_THREADS, &Server::runSlowRequests},
                 {Pool::Writer, 1, &Server::runWrites}};
    // All services before the first thread: a failure here leaves no thread behind.
    std::vector<void (Server::*)(Service &)> loops;
    for (const auto &each : POOLS) {
        for (int i = 0; i < each.threads; ++i) {
            m_services.push_back(std::make_unique<Service>(m_shared, each.pool));
            loops.push_back(each.run);
        }
    }
    for (std::size_t i = 0; i < m_services.size(); ++i)
        m_threads.emplace_back([this, loop = loops[i], &service = *m_services[i]] { (this->*loop)(service); });
    m_vocabularyReader.emplace([this] { readVocabulary(); });
}

/// Before a search has to wait for it.
void Server::readVocabulary()
{
    try {
        Store(m_shared.database, m_shared.store).vocabulary();
    } catch (const std::exception &error) {
        logError("the words of the stored places cannot be read: %s", error.what());
    }
}

Server::~Server()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_stopEvent.get(), &one, sizeof one);
    m_slowRequests.stop();
    m_writes.stop();
    for (std::thread &thread : m_threads)
        thread.join();
    for (const Listener &listener : m_listeners)
        ::unlink(listener.path.c_str());
}

void Server::watch(int fd, unsigned int events, void *what)
{
    epoll_event event = {};
    event.events = events;
    event.data.ptr = what;
    if (::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, fd, &event) != 0)
        fail("cannot watch a socket");
}

void Server::runFastRequests(Service &service)
{
    for (;;) {
        epoll_event event = {};
        if (::epoll_wait(m_epoll.get(), &event, 1, -1) != 1)
            continue;
        if (event.data.ptr == this)
            return;
        const auto listener = std::find_if(m_listeners.begin(), m_listeners.end(),
                                           [&event](const Listener &each) { return &each == event.data.ptr; });
        if (listener != m_listeners.end())
            accept(*listener, service);
        else
            serve(*static_cast<Connection *>(event.data.ptr), service);
    }
}

void Server::runSlowRequests(Service &service)
{
    for (;;) {
        const std::vector<Connection *> next = m_slowRequests.pop(1);
        if (next.empty())
            return;
        serve(*next.front(), service);
    }
}

void Server::runWrites(Service &service)
{
    for (;;) {
        const std::vector<Connection *> group = m_writes.pop(limits::WRITES_PER_COMMIT);
        if (group.empty())
            return;
        // When the common transaction fails, each request runs in one of its own: a failure reaches only its client.
        const bool isAnswered = group.size() > 1 && answerTogether(group, service);
        // While others wait to write, the fast threads have time to send.
        const auto sender = isAnswered ? Connection::Sender::NextThread : Connection::Sender::ThisThread;
        for (Connection *connection : group) {
            handOn(*connection, [&] {
                if (!isAnswered)
                    connection->answerFirst(service);
                return connection->releaseKept(sender);
            });
        }
    }
}

void Server::accept(const Listener &listener, Service &service)
{
    Descriptor socket(::accept4(listener.socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!socket.isOpen())
        return;
    auto owned = std::make_unique<Connection>(std::move(socket), listener.external);
    Connection *connection = owned.get();
    {
        const std::lock_guard<std::mutex> lock(m_connectionsMutex);
        if (m_connections.size() < limits::CONNECTIONS)
            m_connections.emplace(connection, std::move(owned));
    }
    if (!connection->hasInput()) {
        pollfd first = {connection->fd(), POLLIN, 0};
        ::poll(&first, 1, FIRST_REQUEST_WAIT_MS);
    }
    if (owned)
        owned->refuse(ReturnCode::Busy);
    else
        serve(*connection, service);
}

void Server::serve(Connection &connection, Service &service)
{
    handOn(connection, [&] { return connection.advance(service); });
}

void Server::handOn(Connection &connection, const std::function<Connection::Wish()> &step)
{
    Connection::Wish wish = Connection::Wish::Close;
    try {
        wish = step();
    } catch (const std::exception &error) {
        logError("a connection was dropped: %s", error.what());
    }
    if (wish == Connection::Wish::PassOn)
        return (connection.pool() == Pool::Writer ? m_writes : m_slowRequests).push(connection);
    epoll_event event = {};
    event.events = EPOLLONESHOT | Connection::eventsFor(wish);
    event.data.ptr = &connection;
    if (wish == Connection::Wish::Close
        || ::epoll_ctl(m_epoll.get(), connection.watchOperation(), connection.fd(), &event) != 0)
        close(connection);
}

void Server::close(Connection &connection)
{
    const std::lock_guard<std::mutex> lock(m_connectionsMutex);
    m_connections.erase(&connection);
}

void Server::dropIdleConnections()
{
    const auto limit = Clock::now() - limits::CONNECTION_IDLE;
    const std::lock_guard<std::mutex> lock(m_connectionsMutex);
    for (const auto &entry : m_connections) {
        if (entry.first->lastActivity() < limit)
            entry.first->shutDown();
    }
}

void Server::logState()
{
    std::size_t clients = 0;
    {
        const std::lock_guard<std::mutex> lock(m_connectionsMutex);
        clients = m_connections.size();
    }
    long long places = -1;
    try {
        places = Store(m_shared.database, m_shared.store).placeCount(~0);
    } catch (const std::exception &error) {
        logError("the places cannot be counted: %s", error.what());
    }
    const RequestStatistics::Slowest slowest = m_shared.statistics.slowest();
    logInfo("state: %lld places, %zu clients, %llu requests, the slowest of type %d with %.1f ms", places, clients,
            static_cast<unsigned long long>(m_shared.statistics.count()), slowest.type,
            std::chrono::duration<double, std::milli>(slowest.time).count());
}

/// In a folder that others may write to, anybody could replace the sockets.
static void requireOwn(const std::filesystem::path &folder)
{
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0)
        fail("cannot look at " + folder.string());
    if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        throw std::runtime_error(folder.string() + " belongs to somebody else, or others may write to it");
}

channel::Descriptor takeChannelFolder()
{
    const std::filesystem::path folder = channel::folder();
    std::filesystem::create_directories(folder.parent_path());
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        fail("cannot make " + folder.string());
    requireOwn(folder);
    const std::string path = folder / "placesd.lock";
    channel::Descriptor lock(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock.isOpen() || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        fail("cannot take " + path + "; another placesd may be running");
    return lock;
}

Server::Listener listenOn(const std::string &name, bool external, unsigned int mode)
{
    const std::string path = channel::socketPath(name);
    channel::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (path.empty() || !socket.isOpen())
        fail("cannot serve the channel " + name);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    // The folder is this process's own, so a socket that is there was left behind.
    ::unlink(path.c_str());
    const bool bound = ::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
                       && ::chmod(path.c_str(), mode) == 0 && ::listen(socket.get(), SOMAXCONN) == 0;
    if (!bound)
        fail("cannot serve " + path);
    return {std::move(socket), external, path};
}

} // namespace placesd
