// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Server.h"

#include "Limits.h"
#include "Log.h"
#include "protocol/ProtocolTypes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
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

constexpr std::size_t READ_SIZE = 64 * 1024;
/// A client sends its request right after it connects; waiting this long for it saves a turn through epoll.
constexpr int FIRST_REQUEST_WAIT_MS = 1;

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

bool isTrusted(int socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0
           && (peer.uid == 0 || peer.uid == ::geteuid());
}

} // namespace

/// One client. Its bytes are taken as they come; memory follows what has arrived, not what was announced.
class Server::Connection
{
public:
    enum class Wish
    {
        Read,
        Write,
        Turn,   ///< Others come first; there is more to do.
        PassOn, ///< Somebody who may wait has to go on with it.
        Close
    };

    Connection(Descriptor socket, bool external)
        : m_socket(std::move(socket))
        , m_caller{external, isTrusted(m_socket.get())}
    {}

    [[nodiscard]] int fd() const { return m_socket.get(); }
    [[nodiscard]] Clock::time_point lastActivity() const { return m_lastActivity.load(); }
    /// Ends the connection; whoever serves it sees the end of the stream.
    void shutDown() { ::shutdown(fd(), SHUT_RDWR); }

    /// How epoll is to be told that the connection is watched: the first time as a new one.
    int watchOperation()
    {
        const int operation = std::exchange(m_isWatched, true) ? EPOLL_CTL_MOD : EPOLL_CTL_ADD;
        m_turns.fetch_add(1, std::memory_order_release);
        return operation;
    }

    /// What epoll is to watch for. A connection that waits for its turn can as a rule be written to, and so gets it
    /// when those have had theirs that are before it.
    static unsigned int eventsFor(Wish wish)
    {
        switch (wish) {
        case Wish::Write:
            return EPOLLOUT;
        case Wish::Turn:
            return EPOLLIN | EPOLLOUT;
        default:
            return EPOLLIN;
        }
    }

    /// Reads, answers and writes as far as it goes without waiting, for a few requests at the most. Returns what it
    /// waits for.
    Wish advance(Service &service)
    {
        [[maybe_unused]] const unsigned int turns = m_turns.load(std::memory_order_acquire);
        for (int steps = 0; steps < limits::REQUESTS_PER_TURN;) {
            if (!flush())
                return errno == EAGAIN ? Wish::Write : Wish::Close;
            if (takeRequest(service)) {
                ++steps;
                continue;
            }
            if (m_deadline)
                return Wish::PassOn;
            if (const ssize_t received = receive(); received == 0 || (received < 0 && errno != EAGAIN))
                return Wish::Close;
            else if (received < 0)
                return Wish::Read;
        }
        return flush() || errno == EAGAIN ? Wish::Turn : Wish::Close;
    }

    /// Answers the first request, whatever it is, with a code.
    void refuse(ReturnCode code)
    {
        receive();
        queueStatus(code);
        flush();
    }

private:
    ssize_t receive()
    {
        std::array<char, READ_SIZE> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by recv
        ssize_t received = 0;
        do {
            received = ::recv(fd(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        } while (received < 0 && errno == EINTR);
        if (received > 0) {
            m_incoming.erase(m_incoming.begin(), m_incoming.begin() + static_cast<std::ptrdiff_t>(m_taken));
            m_taken = 0;
            m_incoming.insert(m_incoming.end(), bytes.data(), bytes.data() + received);
        }
        return received;
    }

    /// Does the next thing with what has arrived; false when it takes more to have arrived.
    bool takeRequest(Service &service)
    {
        if (m_toDiscard > 0)
            return discard();
        std::uint32_t length = 0;
        if (arrived() < sizeof length)
            return false;
        std::memcpy(&length, next(), sizeof length);
        if (length > limits::REQUEST_SIZE) {
            consume(sizeof length);
            m_toDiscard = length;
            return true;
        }
        const std::size_t whole = sizeof length + length;
        if (arrived() < whole)
            return false;
        // A request that was passed on has kept its time.
        const Deadline deadline = m_deadline.value_or(Clock::now() + service.requestTime());
        const auto reply = service.answer(next() + sizeof length, length, m_caller, deadline);
        if (!reply) {
            m_deadline = deadline;
            return false;
        }
        m_deadline.reset();
        m_lastActivity = Clock::now();
        consume(whole);
        queue(*reply);
        return true;
    }

    /// Lets a request pass that is too long to be kept, and says so behind it.
    bool discard()
    {
        const std::size_t passing = std::min<std::size_t>(m_toDiscard, arrived());
        consume(passing);
        m_toDiscard -= static_cast<std::uint32_t>(passing);
        if (m_toDiscard > 0)
            return false;
        queueStatus(ReturnCode::LimitExceeded);
        return true;
    }

    [[nodiscard]] std::size_t arrived() const { return m_incoming.size() - m_taken; }
    [[nodiscard]] const char *next() const { return m_incoming.data() + m_taken; }

    void consume(std::size_t count)
    {
        m_taken += count;
        if (arrived() == 0) {
            empty(m_incoming);
            m_taken = 0;
        }
    }

    /// A long message does not keep its memory for as long as the connection lasts.
    static void empty(std::vector<char> &bytes)
    {
        bytes.clear();
        if (bytes.capacity() > READ_SIZE)
            bytes.shrink_to_fit();
    }

    void queueStatus(ReturnCode code)
    {
        orix_places_protocol::PlacesAPIEncoder reply;
        reply.encode(static_cast<int>(code));
        reply.encode(orix_places_protocol::REPLY_OFFSET);
        queue(reply);
    }

    void queue(const orix_places_protocol::PlacesAPIEncoder &reply)
    {
        char *data = nullptr;
        int length = 0;
        reply.getData(data, length);
        const auto size = static_cast<std::uint32_t>(length);
        m_outgoing.resize(sizeof size + size);
        std::memcpy(m_outgoing.data(), &size, sizeof size);
        std::memcpy(m_outgoing.data() + sizeof size, data, size);
        m_sent = 0;
    }

    /// True when everything is written; else errno says why not.
    bool flush()
    {
        while (m_sent < m_outgoing.size()) {
            const ssize_t sent =
                ::send(fd(), m_outgoing.data() + m_sent, m_outgoing.size() - m_sent, MSG_DONTWAIT | MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR)
                continue;
            if (sent < 0)
                return false;
            m_sent += static_cast<std::size_t>(sent);
            m_lastActivity = Clock::now();
        }
        empty(m_outgoing);
        m_sent = 0;
        return true;
    }

    Descriptor m_socket;
    const Caller m_caller;
    std::vector<char> m_incoming;
    std::size_t m_taken = 0; ///< How much of what has arrived is done with.
    std::vector<char> m_outgoing;
    std::size_t m_sent = 0;
    std::uint32_t m_toDiscard = 0;
    std::optional<Deadline> m_deadline; ///< Of the request that is passed on; unset when none is.
    bool m_isWatched = false;
    /// The thread that epoll wakes sees all that the one before has done; this says so to the language, too.
    std::atomic<unsigned int> m_turns = 0;
    std::atomic<Clock::time_point> m_lastActivity{Clock::now()};
};

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
    // All of them before the first thread: whoever fails here leaves none behind.
    for (int i = 0; i < limits::THREADS + limits::WAITING_THREADS; ++i) {
        const Patience patience = i < limits::THREADS ? Patience::AnswersAtOnce : Patience::MayWait;
        m_services.push_back(std::make_unique<Service>(m_shared, patience));
    }
    for (std::size_t i = 0; i < m_services.size(); ++i) {
        Service &service = *m_services[i];
        const auto loop = i < limits::THREADS ? &Server::work : &Server::workOnWhatTakesLong;
        m_threads.emplace_back([this, loop, &service] { (this->*loop)(service); });
    }
}

Server::~Server()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_stopEvent.get(), &one, sizeof one);
    {
        const std::lock_guard<std::mutex> lock(m_waitingMutex);
        m_stopping = true;
    }
    m_waitingChanged.notify_all();
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

void Server::work(Service &service)
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

void Server::workOnWhatTakesLong(Service &service)
{
    for (;;) {
        std::unique_lock<std::mutex> lock(m_waitingMutex);
        m_waitingChanged.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
        if (m_stopping)
            return;
        Connection &connection = *m_waiting.front();
        m_waiting.pop_front();
        lock.unlock();
        serve(connection, service);
    }
}

void Server::passOn(Connection &connection)
{
    {
        const std::lock_guard<std::mutex> lock(m_waitingMutex);
        m_waiting.push_back(&connection);
    }
    m_waitingChanged.notify_one();
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
    pollfd first = {connection->fd(), POLLIN, 0};
    ::poll(&first, 1, FIRST_REQUEST_WAIT_MS);
    if (owned)
        owned->refuse(ReturnCode::Busy);
    else
        serve(*connection, service);
}

void Server::serve(Connection &connection, Service &service)
{
    Connection::Wish wish = Connection::Wish::Close;
    try {
        wish = connection.advance(service);
    } catch (const std::exception &error) {
        logError("a connection was dropped: %s", error.what());
    }
    if (wish == Connection::Wish::PassOn)
        return passOn(connection);
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

/// In a folder that others may write to, anybody could put a socket in the stead of ours.
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
