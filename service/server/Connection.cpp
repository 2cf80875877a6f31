// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Connection.h"

#include "Limits.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace placesd
{

using orix_places_protocol::PlacesAPIEncoder;
using orix_places_protocol::ReturnCode;
using vela::system::channel::Descriptor;

namespace
{

constexpr std::size_t READ_SIZE = 64 * 1024;

bool isTrusted(int socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0
           && (peer.uid == 0 || peer.uid == ::geteuid());
}

/// A long message does not keep its memory for as long as the connection lasts.
void empty(std::vector<char> &bytes)
{
    bytes.clear();
    if (bytes.capacity() > READ_SIZE)
        bytes.shrink_to_fit();
}

} // namespace

Connection::Connection(Descriptor socket, bool external)
    : m_socket(std::move(socket))
    , m_caller{external, isTrusted(m_socket.get())}
{}

void Connection::shutDown()
{
    ::shutdown(fd(), SHUT_RDWR);
}

int Connection::watchOperation()
{
    const int operation = std::exchange(m_isWatched, true) ? EPOLL_CTL_MOD : EPOLL_CTL_ADD;
    m_turns.fetch_add(1, std::memory_order_release);
    return operation;
}

unsigned int Connection::eventsFor(Wish wish)
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

Connection::Wish Connection::advance(Service &service)
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
        // Most clients close after one answer: epoll tells of that as of another request.
        if (steps > 0 && arrived() == 0)
            return Wish::Read;
        if (const ssize_t received = receive(); received == 0 || (received < 0 && errno != EAGAIN))
            return Wish::Close;
        else if (received < 0)
            return Wish::Read;
    }
    return flush() || errno == EAGAIN ? Wish::Turn : Wish::Close;
}

void Connection::refuse(ReturnCode code)
{
    receive();
    queueStatus(code);
    flush();
}

ssize_t Connection::receive()
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

bool Connection::takeRequest(Service &service)
{
    if (m_toDiscard > 0)
        return discard();
    if (arrived() < sizeof(std::uint32_t))
        return false;
    const std::uint32_t length = firstLength();
    if (length > limits::REQUEST_SIZE) {
        consume(sizeof length);
        m_toDiscard = length;
        return true;
    }
    if (arrived() < sizeof length + length)
        return false;
    const auto reply = runFirst(service);
    if (reply)
        finishFirst(*reply);
    return reply != nullptr;
}

std::unique_ptr<PlacesAPIEncoder> Connection::runFirst(Service &service)
{
    // A request that is passed on keeps its deadline.
    if (!m_deadline)
        m_deadline = Clock::now() + service.requestTime();
    Answer answer = service.answer(next() + sizeof(std::uint32_t), firstLength(), m_caller, *m_deadline);
    m_pool = answer.pool;
    return std::move(answer.reply);
}

void Connection::finishFirst(const PlacesAPIEncoder &reply)
{
    m_deadline.reset();
    m_lastActivity = Clock::now();
    consume(sizeof(std::uint32_t) + firstLength());
    queue(reply);
}

void Connection::answerFirst(Service &service)
{
    m_kept = runFirst(service);
}

Connection::Wish Connection::releaseKept(Sender sender)
{
    if (!m_kept)
        return Wish::PassOn;
    finishFirst(*m_kept);
    m_kept.reset();
    if (sender == Sender::NextThread)
        return Wish::Write;
    if (!flush())
        return errno == EAGAIN ? Wish::Write : Wish::Close;
    return arrived() > 0 ? Wish::Turn : Wish::Read;
}

std::uint32_t Connection::firstLength() const
{
    std::uint32_t length = 0;
    std::memcpy(&length, next(), sizeof length);
    return length;
}

bool Connection::discard()
{
    const std::size_t passing = std::min<std::size_t>(m_toDiscard, arrived());
    consume(passing);
    m_toDiscard -= static_cast<std::uint32_t>(passing);
    if (m_toDiscard > 0)
        return false;
    queueStatus(ReturnCode::LimitExceeded);
    return true;
}

void Connection::consume(std::size_t count)
{
    m_taken += count;
    if (arrived() == 0) {
        empty(m_incoming);
        m_taken = 0;
    }
}

void Connection::queueStatus(ReturnCode code)
{
    PlacesAPIEncoder reply;
    reply.encode(static_cast<int>(code));
    reply.encode(orix_places_protocol::REPLY_OFFSET);
    queue(reply);
}

void Connection::queue(const PlacesAPIEncoder &reply)
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

bool Connection::flush()
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

} // namespace placesd
