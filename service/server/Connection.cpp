// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Connection.h"

#include "Limits.h"
#include "server/Connections.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

namespace placesd
{

using orix_places_protocol::PlacesAPIEncoder;
using orix_places_protocol::ReturnCode;
using vela::system::channel::Descriptor;

namespace
{

constexpr std::size_t READ_SIZE = 64 * 1024;

Status noRoom()
{
    return {ReturnCode::Busy, "requests and replies in progress use all the memory that a user may have"};
}

std::size_t sizeOf(const PlacesAPIEncoder &reply)
{
    char *data = nullptr;
    int length = 0;
    reply.getData(data, length);
    return static_cast<std::size_t>(length);
}

} // namespace

Caller callerOf(int socket, bool external)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    // Without peer credentials the caller gets no rights.
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return {external, false, static_cast<uid_t>(-1)};
    return {external, peer.uid == 0 || peer.uid == ::geteuid(), peer.uid};
}

Connection::Connection(Descriptor socket, const Caller &caller, Connections &all)
    : m_socket(std::move(socket))
    , m_caller(caller)
    , m_all(all)
{}

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
    for (int steps = 0; steps < limits::REQUESTS_PER_TURN;) {
        if (!flush())
            return errno == EAGAIN ? Wish::Write : Wish::Close;
        if (takeRequest(service)) {
            ++steps;
            continue;
        }
        if (m_deadline)
            return Wish::PassOn;
        // Most clients close after one reply; epoll reports that like another request.
        if (steps > 0 && arrived() == 0)
            return Wish::Read;
        if (const ssize_t received = receive(); received == 0 || (received < 0 && errno != EAGAIN))
            return Wish::Close;
        else if (received < 0)
            return hold(0) ? Wish::Read : Wish::Close;
    }
    return flush() || errno == EAGAIN ? Wish::Turn : Wish::Close;
}

void Connection::refuse(const Status &status)
{
    // Closing a socket with unread bytes discards sent bytes too.
    std::array<char, READ_SIZE> bytes; // never read
    [[maybe_unused]] const ssize_t unread = ::recv(fd(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    queueStatus(status);
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
        if (m_toDiscard == 0 && !hold(0))
            discardFirst(noRoom());
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
        discardFirst({ReturnCode::LimitExceeded, "the request has " + std::to_string(length) + " bytes; the maximum is "
                                                     + std::to_string(limits::REQUEST_SIZE)});
        return true;
    }
    if (arrived() < sizeof length + length)
        return false;
    auto reply = runFirst(service);
    const bool isAnswered = reply != nullptr;
    if (isAnswered)
        finishFirst(std::move(reply));
    return isAnswered;
}

std::unique_ptr<PlacesAPIEncoder> Connection::runFirst(Service &service)
{
    // A request that was passed on keeps its deadline.
    if (!m_deadline)
        m_deadline = m_arrival + service.requestTime();
    const std::size_t room = m_all.holdReply(*this);
    m_held += room;
    Answer answer = service.answer(next() + sizeof(std::uint32_t), firstLength(), m_caller, *m_deadline, room);
    m_pool = answer.pool;
    if (!hold(answer.reply ? sizeOf(*answer.reply) : 0)) {
        answer.reply = statusReply(noRoom());
        hold(0);
    }
    return std::move(answer.reply);
}

void Connection::finishFirst(std::unique_ptr<Encoder> reply)
{
    m_deadline.reset();
    m_lastActivity = Clock::now();
    m_arrival = m_lastActivity; // of a request sent ahead
    consume(sizeof(std::uint32_t) + firstLength());
    m_reply = std::move(reply);
    hold(sizeOf(*m_reply));
}

void Connection::answerFirst(Service &service)
{
    m_kept = runFirst(service);
}

Connection::Wish Connection::releaseKept(Sender sender)
{
    if (!m_kept)
        return Wish::PassOn;
    finishFirst(std::move(m_kept));
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

void Connection::discardFirst(Status status)
{
    m_toDiscard = firstLength();
    m_discardStatus = std::move(status);
    consume(sizeof m_toDiscard);
}

bool Connection::discard()
{
    const std::size_t passing = std::min<std::size_t>(m_toDiscard, arrived());
    consume(passing);
    m_toDiscard -= static_cast<std::uint32_t>(passing);
    if (m_toDiscard > 0)
        return false;
    queueStatus(m_discardStatus);
    hold(0);
    return true;
}

void Connection::consume(std::size_t count)
{
    m_taken += count;
    if (arrived() > 0)
        return;
    m_incoming.clear();
    m_taken = 0;
    // Free the memory of a long message, not only with the connection.
    if (m_incoming.capacity() > limits::UNCOUNTED_BYTES)
        m_incoming.shrink_to_fit();
}

bool Connection::hold(std::size_t reply)
{
    const std::size_t bytes = arrived() + reply;
    const std::size_t counted = bytes > limits::UNCOUNTED_BYTES ? bytes : 0;
    const bool hasRoom = counted == m_held || m_all.hold(*this, counted);
    if (hasRoom)
        m_held = counted;
    return hasRoom;
}

void Connection::queueStatus(const Status &status)
{
    m_reply = statusReply(status);
}

bool Connection::flush()
{
    while (m_reply) {
        const auto size = static_cast<std::uint32_t>(sizeOf(*m_reply));
        const ssize_t sent = send(size);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0)
            return false;
        m_sent += static_cast<std::size_t>(sent);
        m_lastActivity = Clock::now();
        if (m_sent < sizeof size + size)
            continue;
        m_reply.reset();
        m_sent = 0;
        hold(0);
    }
    return true;
}

ssize_t Connection::send(std::uint32_t size)
{
    char *data = nullptr;
    int length = 0;
    m_reply->getData(data, length);
    iovec parts[] = {{&size, sizeof size}, {data, size}};
    std::size_t done = m_sent;
    for (iovec &part : parts) {
        const std::size_t step = std::min(done, part.iov_len);
        part.iov_base = static_cast<char *>(part.iov_base) + step;
        part.iov_len -= step;
        done -= step;
    }
    msghdr message = {};
    message.msg_iov = parts;
    message.msg_iovlen = std::size(parts);
    return ::sendmsg(fd(), &message, MSG_DONTWAIT | MSG_NOSIGNAL);
}

} // namespace placesd
