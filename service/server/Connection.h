// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "requests/Service.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace placesd
{

class Connections;

/// The peer of a socket.
Caller callerOf(int socket, bool external);

/// A client connection. Its memory grows with the received bytes, not with the announced length, and counts against the
/// share of its user. Used by one thread at a time; caller() is thread-safe.
class Connection
{
public:
    enum class Wish
    {
        Read,
        Write,
        Turn,   ///< More input is available; other connections come first.
        PassOn, ///< Another pool must run the first request.
        Close
    };

    /// @param all counts the memory of this connection; must outlive it.
    Connection(vela::system::channel::Descriptor socket, const Caller &caller, Connections &all);

    [[nodiscard]] int fd() const { return m_socket.get(); }
    [[nodiscard]] const Caller &caller() const { return m_caller; }
    [[nodiscard]] std::uint64_t id() const { return m_id; }
    void setId(std::uint64_t id) { m_id = id; }
    /// Starts the time of a request when input arrives, not when a thread is free.
    void noteArrival() { m_arrival = Clock::now(); }
    /// Time of the last answered request or of the last sent bytes.
    [[nodiscard]] Clock::time_point lastActivity() const { return m_lastActivity; }

    /// The epoll events for a wish. A connection that waits for its turn is usually writable, so epoll reports it at
    /// once, after those that are already ready.
    static unsigned int eventsFor(Wish wish);

    /// Reads, answers and writes a limited number of requests without blocking. Returns what the connection waits for.
    Wish advance(Service &service);
    /// The pool that must run the first request, after Wish::PassOn.
    [[nodiscard]] Pool pool() const { return m_pool; }

    /// Size of the first request, after Wish::PassOn, in bytes.
    [[nodiscard]] std::size_t requestSize() const { return m_deadline ? firstLength() : 0; }
    /// Deadline of the first request, after Wish::PassOn.
    [[nodiscard]] Deadline deadline() const { return *m_deadline; }
    /// Runs the first request, after Wish::PassOn, and holds its reply back. Can be called again to run it again.
    void answerFirst(Service &service);
    enum class Sender
    {
        ThisThread, ///< Sends at once, without blocking.
        NextThread  ///< The thread to which epoll gives the connection next.
    };
    /// Releases the held reply for sending. Returns what the connection waits for.
    Wish releaseKept(Sender sender);
    /// Answers the first request with a status, without reading it.
    void refuse(const Status &status);

private:
    using Encoder = orix_places_protocol::PlacesAPIEncoder;
    using ReturnCode = orix_places_protocol::ReturnCode;

    ssize_t receive();
    /// Answers or discards the first request; false when it is incomplete or another pool must run it.
    bool takeRequest(Service &service);
    /// Runs the first request, which is complete.
    std::unique_ptr<Encoder> runFirst(Service &service);
    /// Removes the first request from the input and queues its reply.
    void finishFirst(std::unique_ptr<Encoder> reply);
    /// Discards the rest of the first request, then answers it with a status.
    void discardFirst(Status status);
    bool discard();

    /// Length of the first request without its length field, which has arrived.
    [[nodiscard]] std::uint32_t firstLength() const;
    [[nodiscard]] std::size_t arrived() const { return m_incoming.size() - m_taken; }
    [[nodiscard]] const char *next() const { return m_incoming.data() + m_taken; }
    void consume(std::size_t count);
    /// Counts the input and `reply` bytes against the share. False when they exceed it.
    bool hold(std::size_t reply);

    void queueStatus(const Status &status);
    /// True when everything is written; else errno has the reason.
    bool flush();
    /// Writes the rest of m_reply, which has `size` bytes, without blocking.
    ssize_t send(std::uint32_t size);

    vela::system::channel::Descriptor m_socket;
    const Caller m_caller;
    Connections &m_all;
    std::uint64_t m_id = 0;
    std::vector<char> m_incoming;
    std::size_t m_taken = 0;          ///< Bytes of m_incoming that are processed.
    std::unique_ptr<Encoder> m_reply; ///< The reply that is being sent; null when there is none.
    std::size_t m_sent = 0;           ///< Sent bytes of the length field and m_reply.
    std::size_t m_held = 0;           ///< Bytes counted by m_all.
    Clock::time_point m_arrival = Clock::now();
    std::uint32_t m_toDiscard = 0;
    Status m_discardStatus = ReturnCode::LimitExceeded;
    std::optional<Deadline> m_deadline; ///< Deadline of the request that is passed on; unset when there is none.
    Pool m_pool = Pool::Fast;           ///< Pool that must run the request that is passed on.
    std::unique_ptr<Encoder> m_kept;    ///< The held reply.
    Clock::time_point m_lastActivity = Clock::now();
};

} // namespace placesd
