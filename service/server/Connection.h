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

/// Who is at the other end of a socket.
Caller callerOf(int socket, bool external);

/// One client. Memory follows the bytes that have arrived, not the length that was announced, and is counted against
/// the share of the client's user. Belongs to one thread at a time; caller() is safe on any.
class Connection
{
public:
    enum class Wish
    {
        Read,
        Write,
        Turn,   ///< More has arrived; other connections come first.
        PassOn, ///< Another pool has to run the first request.
        Close
    };

    /// @param all what counts the memory of this connection and outlives it.
    Connection(vela::system::channel::Descriptor socket, const Caller &caller, Connections &all);

    [[nodiscard]] int fd() const { return m_socket.get(); }
    [[nodiscard]] const Caller &caller() const { return m_caller; }
    [[nodiscard]] std::uint64_t id() const { return m_id; }
    void setId(std::uint64_t id) { m_id = id; }
    /// Its client has sent something: the time of a request counts from here, not from when a thread is free for it.
    void noteArrival() { m_arrival = Clock::now(); }
    /// When a request was last answered, or bytes of a reply sent.
    [[nodiscard]] Clock::time_point lastActivity() const { return m_lastActivity; }

    /// The events that epoll watches for. A connection that waits for its turn can nearly always be written to, so
    /// epoll reports it at once, behind those that are ready already.
    static unsigned int eventsFor(Wish wish);

    /// Reads, answers and writes a few requests at most, as far as it goes without waiting. Returns what the connection
    /// waits for.
    Wish advance(Service &service);
    /// The pool that has to run the first request, after Wish::PassOn.
    [[nodiscard]] Pool pool() const { return m_pool; }

    /// Bytes of the first request, which was passed on.
    [[nodiscard]] std::size_t requestSize() const { return m_deadline ? firstLength() : 0; }
    /// When the first request, which was passed on, has to be answered.
    [[nodiscard]] Deadline deadline() const { return *m_deadline; }
    /// Runs the first request, which was passed on, and keeps its reply back. Can be called again, to run it anew.
    void answerFirst(Service &service);
    enum class Sender
    {
        ThisThread, ///< As far as it goes without waiting.
        NextThread  ///< The one that epoll gives the connection to.
    };
    /// Lets the reply that was kept back be sent. Returns what the connection waits for.
    Wish releaseKept(Sender sender);
    /// Answers the first request with a status, without looking at it.
    void refuse(const Status &status);

private:
    using Encoder = orix_places_protocol::PlacesAPIEncoder;
    using ReturnCode = orix_places_protocol::ReturnCode;

    ssize_t receive();
    /// Answers or discards the first request; false when more of it has to arrive, or another pool has to run it.
    bool takeRequest(Service &service);
    /// Runs the first request, which is whole.
    std::unique_ptr<Encoder> runFirst(Service &service);
    /// Puts the reply to the first request behind it.
    void finishFirst(std::unique_ptr<Encoder> reply);
    /// Lets the rest of the first request pass unread, and answers it with a status then.
    void discardFirst(Status status);
    bool discard();

    /// Length of the first request without its head; it has arrived.
    [[nodiscard]] std::uint32_t firstLength() const;
    [[nodiscard]] std::size_t arrived() const { return m_incoming.size() - m_taken; }
    [[nodiscard]] const char *next() const { return m_incoming.data() + m_taken; }
    void consume(std::size_t count);
    /// Counts what has arrived and `reply` bytes. False when there is no room for more than was counted before.
    bool hold(std::size_t reply);

    void queueStatus(const Status &status);
    /// True when everything is written; else errno says why not.
    bool flush();
    /// Writes what is left of m_reply, which has `size` bytes, as far as it goes without waiting.
    ssize_t send(std::uint32_t size);

    vela::system::channel::Descriptor m_socket;
    const Caller m_caller;
    Connections &m_all;
    std::uint64_t m_id = 0;
    std::vector<char> m_incoming;
    std::size_t m_taken = 0;          ///< Bytes of m_incoming that are done with.
    std::unique_ptr<Encoder> m_reply; ///< Being sent; null when none is.
    std::size_t m_sent = 0;           ///< Bytes of m_reply and its length.
    std::size_t m_held = 0;           ///< Bytes that m_all counts.
    Clock::time_point m_arrival = Clock::now();
    std::uint32_t m_toDiscard = 0;
    Status m_discardStatus = ReturnCode::LimitExceeded;
    std::optional<Deadline> m_deadline; ///< Of the request that is passed on; unset when none is.
    Pool m_pool = Pool::Fast;           ///< Which has to run the request that is passed on.
    std::unique_ptr<Encoder> m_kept;    ///< Reply that is kept back.
    Clock::time_point m_lastActivity = Clock::now();
};

} // namespace placesd
