// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "requests/Service.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace placesd
{

/// One client. Memory follows the bytes that have arrived, not the length that was announced. Belongs to one thread at
/// a time; only lastActivity() and shutDown() are safe on any.
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

    Connection(vela::system::channel::Descriptor socket, bool external);

    [[nodiscard]] int fd() const { return m_socket.get(); }
    [[nodiscard]] Clock::time_point lastActivity() const { return m_lastActivity.load(); }
    /// Ends the connection; the thread that serves it sees the end of the stream.
    void shutDown();

    /// The operation that has epoll watch the connection: EPOLL_CTL_ADD the first time, then EPOLL_CTL_MOD.
    int watchOperation();
    /// The events that epoll watches for. A connection that waits for its turn can nearly always be written to, so
    /// epoll reports it at once, behind those that are ready already.
    static unsigned int eventsFor(Wish wish);

    /// Reads what has arrived; false where that is nothing.
    bool hasInput() { return receive() > 0; }
    /// Reads, answers and writes a few requests at most, as far as it goes without waiting. Returns what the connection
    /// waits for.
    Wish advance(Service &service);
    /// The pool that has to run the first request, after Wish::PassOn.
    [[nodiscard]] Pool pool() const { return m_pool; }

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
    /// Answers the first request with a code, without looking at it.
    void refuse(orix_places_protocol::ReturnCode code);

private:
    ssize_t receive();
    /// Answers or discards the first request; false when more of it has to arrive, or another pool has to run it.
    bool takeRequest(Service &service);
    /// Runs the first request, which is whole.
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> runFirst(Service &service);
    /// Puts the reply to the first request behind it.
    void finishFirst(const orix_places_protocol::PlacesAPIEncoder &reply);
    /// Discards a request that is too long to be kept, and answers it once it has passed.
    bool discard();

    /// Length of the first request without its head; it has arrived.
    [[nodiscard]] std::uint32_t firstLength() const;
    [[nodiscard]] std::size_t arrived() const { return m_incoming.size() - m_taken; }
    [[nodiscard]] const char *next() const { return m_incoming.data() + m_taken; }
    void consume(std::size_t count);

    void queueStatus(orix_places_protocol::ReturnCode code);
    void queue(const orix_places_protocol::PlacesAPIEncoder &reply);
    /// True when everything is written; else errno says why not.
    bool flush();

    vela::system::channel::Descriptor m_socket;
    const Caller m_caller;
    std::vector<char> m_incoming;
    std::size_t m_taken = 0; ///< Bytes of m_incoming that are done with.
    std::vector<char> m_outgoing;
    std::size_t m_sent = 0;
    std::uint32_t m_toDiscard = 0;
    std::optional<Deadline> m_deadline; ///< Of the request that is passed on; unset when none is.
    Pool m_pool = Pool::Fast;           ///< Which has to run the request that is passed on.
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> m_kept; ///< Reply that is kept back.
    bool m_isWatched = false;
    /// Orders the work of two threads one after the other. epoll does so too, but the memory model does not know it.
    std::atomic<unsigned int> m_turns = 0;
    std::atomic<Clock::time_point> m_lastActivity{Clock::now()};
};

} // namespace placesd
