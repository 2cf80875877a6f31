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
        Turn,   ///< Others come first; there is more to do.
        PassOn, ///< Another pool has to run the first request.
        Close
    };

    Connection(vela::system::channel::Descriptor socket, bool external);

    [[nodiscard]] int fd() const { return m_socket.get(); }
    [[nodiscard]] Clock::time_point lastActivity() const { return m_lastActivity.load(); }
    /// Ends the connection; whoever serves it sees the end of the stream.
    void shutDown();

    /// How epoll is to be told that the connection is watched: the first time as a new one.
    int watchOperation();
    /// What epoll is to watch for. A connection that waits for its turn can as a rule be written to, and so gets it
    /// when those have had theirs that are before it.
    static unsigned int eventsFor(Wish wish);

    /// Reads, answers and writes as far as it goes without waiting, for a few requests at the most. Returns what it
    /// waits for.
    Wish advance(Service &service);
    /// The pool that has to run the first request, after Wish::PassOn.
    [[nodiscard]] Pool pool() const { return m_pool; }

    /// When the first request, which was passed on, has to be answered.
    [[nodiscard]] Deadline deadline() const { return *m_deadline; }
    /// Runs the first request, which was passed on, and keeps its reply back. Can be called again, to run it anew.
    void answerFirst(Service &service);
    /// Sends the reply that was kept back, as far as it goes without waiting. Returns what the connection waits for.
    Wish sendKept();
    /// Answers the first request, whatever it is, with a code.
    void refuse(orix_places_protocol::ReturnCode code);

private:
    ssize_t receive();
    /// Does the next thing with what has arrived; false when it takes more to have arrived.
    bool takeRequest(Service &service);
    /// Runs the first request, which is whole.
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> runFirst(Service &service);
    /// Puts the reply to the first request behind it.
    void finishFirst(const orix_places_protocol::PlacesAPIEncoder &reply);
    /// Lets a request pass that is too long to be kept, and says so behind it.
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
    std::size_t m_taken = 0; ///< How much of what has arrived is done with.
    std::vector<char> m_outgoing;
    std::size_t m_sent = 0;
    std::uint32_t m_toDiscard = 0;
    std::optional<Deadline> m_deadline; ///< Of the request that is passed on; unset when none is.
    Pool m_pool = Pool::Fast;           ///< Which has to run the request that is passed on.
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> m_kept; ///< Reply that is kept back.
    bool m_isWatched = false;
    /// The thread that epoll wakes sees all that the one before has done; this says so to the language, too.
    std::atomic<unsigned int> m_turns = 0;
    std::atomic<Clock::time_point> m_lastActivity{Clock::now()};
};

} // namespace placesd
