// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Server.h"

#include "Limits.h"
#include "Log.h"
#include "protocol/ProtocolTypes.h"
#include "server/ChannelFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
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

/// A client sends its request right after it connects, so a short wait saves an event of epoll. Only for the owner's
/// clients, and only until the next client connects.
constexpr int FIRST_REQUEST_WAIT_MS = 1;

/// Events of the epoll other than connections: stop, and listener number 0.
constexpr std::uint64_t STOP_ID = 0;
constexpr std::uint64_t FIRST_LISTENER_ID = 1;

/// Raises the limit of open files to its maximum and returns it.
std::size_t raiseDescriptorLimit()
{
    rlimit files = {};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return 0;
    const rlimit most = {files.rlim_max, files.rlim_max};
    return ::setrlimit(RLIMIT_NOFILE, &most) == 0 ? most.rlim_cur : files.rlim_cur;
}

/// @param advice the remedy.
[[noreturn]] void fail(const std::string &what, const char *advice)
{
    throw std::runtime_error(what + ": " + std::generic_category().message(errno) + "; " + advice);
}

/// Runs the first requests of connections in one transaction and holds their replies back. False when nothing is
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
    , m_store(m_shared.database, m_shared.store)
    , m_connections(m_epoll.get(), raiseDescriptorLimit())
    , m_fastRequests({limits::FAST_THREADS_OPEN, limits::FAST_THREADS_OPEN_USER})
    , m_slowRequests({limits::SLOW_THREADS_OPEN, limits::SLOW_THREADS_OPEN_USER})
    , m_writes({limits::WRITES_PER_COMMIT_OPEN, limits::WRITES_PER_COMMIT_OPEN_USER})
{
    if (!m_epoll.isOpen() || !m_stopEvent.isOpen())
        fail("cannot watch the sockets of the channels", "see the limit of open files");
    watch(m_stopEvent.get(), EPOLLIN, STOP_ID);
    for (std::size_t i = 0; i < m_listeners.size(); ++i)
        watch(m_listeners[i].socket.get(), EPOLLIN | EPOLLEXCLUSIVE, FIRST_LISTENER_ID + i);
    constexpr struct
    {
        Pool pool;
        int threads;
        void (Server::*run)(Service &);
    } POOLS[] = {{Pool::Fast, limits::FAST_THREADS, &Server::runFastRequests},
                 {Pool::Slow, limits::SLOW_THREADS, &Server::runSlowRequests},
                 {Pool::Writer, 1, &Server::runWrites}};
    // Create all services before the first thread: a failure here then leaves no thread behind.
    std::vector<void (Server::*)(Service &)> loops;
    for (const auto &each : POOLS) {
        for (int i = 0; i < each.threads; ++i) {
            m_services.push_back(std::make_unique<Service>(m_shared, each.pool));
            loops.push_back(each.run);
        }
    }
    m_vocabularyReader.emplace([this] { readVocabulary(); });
    for (std::size_t i = 0; i < m_services.size(); ++i)
        m_threads.emplace_back([this, loop = loops[i], &service = *m_services[i]] { (this->*loop)(service); });
}

/// Run before the first search needs it, and when the vocabulary may contain many words of removed places.
void Server::readVocabulary()
{
    try {
        Store store(m_shared.database, m_shared.store);
        store.vocabulary();
        if (m_shared.store.words.isStale())
            store.rereadVocabulary();
    } catch (const SQLite::Exception &error) {
        if (!m_shared.store.damage->note(error))
            logError("the words of the stored places cannot be read: %s", error.what());
    } catch (const std::exception &error) {
        logError("%s: the words of its places cannot be read, so finds correct no words until the next start: %s",
                 m_shared.database.c_str(), error.what());
    }
}

Server::~Server()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_stopEvent.get(), &one, sizeof one);
    for (ConnectionQueue *queue : {&m_fastRequests, &m_slowRequests, &m_writes})
        queue->stop();
    for (std::thread &thread : m_threads)
        thread.join();
    for (const Listener &listener : m_listeners)
        removeSocket(listener.path);
}

void Server::watch(int fd, unsigned int events, std::uint64_t id)
{
    epoll_event event = {};
    event.events = events;
    event.data.u64 = id;
    if (::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, fd, &event) != 0)
        fail("cannot watch a socket of a channel", "see the limits of epoll and of open files");
}

void Server::runFastRequests(Service &service)
{
    for (;;) {
        epoll_event event = {};
        if (::epoll_wait(m_epoll.get(), &event, 1, -1) != 1)
            continue;
        if (event.data.u64 == STOP_ID)
            return;
        if (event.data.u64 < Connections::FIRST_ID)
            accept(m_listeners[event.data.u64 - FIRST_LISTENER_ID]);
        else if (Connection *connection = m_connections.take(event.data.u64)) {
            connection->noteArrival();
            m_fastRequests.push(*connection);
        }
        serveFast(service);
    }
}

void Server::serveFast(Service &service)
{
    while (Connection *connection = m_fastRequests.tryPop()) {
        const Caller caller = connection->caller();
        handOn(*connection, [&] { return connection->advance(service); });
        m_fastRequests.end(caller);
    }
}

void Server::runSlowRequests(Service &service)
{
    for (;;) {
        const std::vector<Connection *> next = m_slowRequests.pop(1, limits::REQUEST_SIZE);
        if (next.empty())
            return;
        const Caller caller = next.front()->caller();
        handOn(*next.front(), [&] { return next.front()->advance(service); });
        m_slowRequests.end(caller);
    }
}

void Server::runWrites(Service &service)
{
    for (;;) {
        const std::vector<Connection *> group = m_writes.pop(limits::WRITES_PER_COMMIT, limits::WRITE_BYTES_PER_COMMIT);
        if (group.empty())
            return;
        // When the common transaction fails, each request runs in its own, so a failure affects one client only.
        const bool isAnswered = group.size() > 1 && answerTogether(group, service);
        // While other requests wait for the writer, the fast threads have time to send.
        const auto sender = isAnswered ? Connection::Sender::NextThread : Connection::Sender::ThisThread;
        for (Connection *connection : group) {
            const Caller caller = connection->caller();
            handOn(*connection, [&] {
                if (!isAnswered)
                    connection->answerFirst(service);
                return connection->releaseKept(sender);
            });
            m_writes.end(caller);
        }
        if (m_shared.store.words.isStale())
            m_vocabularyReader->runAgain();
    }
}

void Server::accept(const Listener &listener)
{
    Descriptor socket(::accept4(listener.socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!socket.isOpen())
        return recoverFromAccept(errno);
    const Caller caller = callerOf(socket.get(), listener.external);
    auto connection = std::make_unique<Connection>(std::move(socket), caller, m_connections);
    // A connection without room is closed after the reply.
    if (Connection *accepted = connection.get(); m_connections.add(connection)) {
        pollfd events[] = {{accepted->fd(), POLLIN, 0}, {listener.socket.get(), POLLIN, 0}};
        if (!listener.external)
            ::poll(events, std::size(events), FIRST_REQUEST_WAIT_MS);
        m_fastRequests.push(*accepted);
    } else {
        connection->refuse({ReturnCode::Busy, "all connections that the user may have are in use"});
    }
}

void Server::recoverFromAccept(int error)
{
    // Another thread accepted the client, or it has disconnected.
    if (error == EAGAIN || error == ECONNABORTED || error == EINTR)
        return;
    if (!m_isShortOfRoom.exchange(true))
        logError("clients cannot be accepted: %s; idle ones are closed for them. See the limit of open files",
                 std::strerror(error));
    m_connections.closeOldest();
    std::this_thread::sleep_for(limits::ACCEPT_PAUSE);
}

void Server::handOn(Connection &connection, const std::function<Connection::Wish()> &step)
{
    Connection::Wish wish = Connection::Wish::Close;
    try {
        wish = step();
    } catch (const std::exception &error) {
        logError("a connection of user %u was closed without an answer: %s", connection.caller().user, error.what());
    }
    if (wish == Connection::Wish::PassOn)
        return (connection.pool() == Pool::Writer ? m_writes : m_slowRequests).push(connection);
    if (wish == Connection::Wish::Close)
        m_connections.close(connection);
    else
        m_connections.watch(connection, Connection::eventsFor(wish));
}

void Server::dropIdleConnections()
{
    m_isShortOfRoom = false;
    m_connections.closeIdle(Clock::now() - limits::CONNECTION_IDLE);
}

std::string Server::state()
{
    const std::size_t clients = m_connections.size();
    long long places = -1;
    try {
        places = m_store.placeCount(~0);
    } catch (const SQLite::Exception &error) {
        m_shared.store.damage->note(error);
    }
    const RequestStatistics::Slowest slowest = m_shared.statistics.slowest();
    std::array<char, 256> text = {};
    std::snprintf(text.data(), text.size(),
                  "%s%lld places, %zu clients, %llu requests, %llu a minute, the slowest of type %d with %.1f ms",
                  m_shared.store.damage->isDamaged() ? "the database is damaged, " : "", places, clients,
                  static_cast<unsigned long long>(m_shared.statistics.count()),
                  static_cast<unsigned long long>(m_shared.statistics.countOfLastMinute()), slowest.type,
                  std::chrono::duration<double, std::milli>(slowest.time).count());
    return text.data();
}

Server::Listener listenOn(const std::string &name, bool external, unsigned int mode)
{
    const std::string path = channel::socketPath(name);
    channel::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (path.empty() || !socket.isOpen())
        fail("cannot serve the channel " + name, "name a folder with a short path with VELA_CHANNEL_DIR");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    // The folder is locked by this process, so an existing socket is stale.
    const bool bound = removeSocket(path)
                       && ::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
                       && ::chmod(path.c_str(), mode) == 0 && ::listen(socket.get(), SOMAXCONN) == 0;
    if (!bound)
        fail("cannot serve " + path, "remove that file, or name another folder with VELA_CHANNEL_DIR");
    return {std::move(socket), external, path};
}

} // namespace placesd
