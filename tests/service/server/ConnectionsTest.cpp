// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Connections.h"

#include "Limits.h"
#include "server/Connection.h"
#include "server/ConnectionQueue.h"
#include "support/LocalService.h"
#include "support/Requests.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <deque>
#include <sys/epoll.h>
#include <thread>

using namespace placesd;
using namespace requests;
using namespace std::chrono_literals;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;
using testing::IsEmpty;
using vela::system::channel::Descriptor;
using Wish = Connection::Wish;

namespace
{

constexpr Caller OWNER = LocalService::OWNER;
constexpr Caller GUEST = LocalService::GUEST;
constexpr Caller OTHER_GUEST = LocalService::OTHER_GUEST;
constexpr std::size_t MEGABYTE = 1024 * 1024;

const std::string TAGS = message(head(Type::GetTags));
const std::string TAG_NOTHING = withId(Type::AddTag, 99, {text("beach")});

std::string framed(const std::string &request)
{
    return message({i32(static_cast<int>(request.size()))}) + request;
}

/// Client sockets and the connections of the service to them.
class ConnectionsTest : public testing::Test
{
protected:
    /// Connects a client and returns its number. The connection waits for input.
    std::size_t connect(const Caller &caller, bool isWatched = true)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        clients.emplace_back(ends[0]);
        auto made = std::make_unique<Connection>(Descriptor(ends[1]), caller, all);
        connections.push_back(made.get());
        if (!all.add(made))
            connections.back() = nullptr;
        else if (isWatched)
            all.watch(*connections.back(), EPOLLIN);
        return clients.size() - 1;
    }
    /// The numbers of the clients whose connections were closed.
    std::vector<std::size_t> closed()
    {
        std::vector<std::size_t> numbers;
        for (std::size_t i = 0; i < clients.size(); ++i) {
            char byte = 0;
            if (::recv(clients[i].get(), &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0)
                numbers.push_back(i);
        }
        return numbers;
    }
    void send(std::size_t client, const std::string &bytes)
    {
        ASSERT_EQ(::send(clients[client].get(), bytes.data(), bytes.size(), MSG_DONTWAIT),
                  static_cast<ssize_t>(bytes.size()));
    }
    /// The codes of the replies that a client has received.
    std::vector<int> codes(std::size_t client)
    {
        for (char bytes[65536]; const auto size = ::recv(clients[client].get(), bytes, sizeof bytes, MSG_DONTWAIT);) {
            if (size < 0)
                break;
            received += std::string(bytes, static_cast<std::size_t>(size));
        }
        std::vector<int> found;
        std::uint32_t length = 0;
        while (received.size() >= sizeof length) {
            std::memcpy(&length, received.data(), sizeof length);
            if (received.size() < sizeof length + length)
                break;
            found.push_back(LocalService::codeIn(received.substr(sizeof length)));
            received.erase(0, sizeof length + length);
        }
        return found;
    }

    const Descriptor epoll{::epoll_create1(EPOLL_CLOEXEC)};
    /// Room for 16 connections of the owner's, eight on the open channel, and three of each user there.
    Connections all{epoll.get(), limits::RESERVED_DESCRIPTORS + 24};
    std::deque<Descriptor> clients;
    std::vector<Connection *> connections;
    std::string received;
};

/// One connection, and services of the pools.
class ConnectionTest : public ConnectionsTest
{
protected:
    LocalService local;
    Service fast{local.shared, Pool::Fast};
    Service writer{local.shared, Pool::Writer};
    const std::size_t client = connect(OWNER);
    Connection &connection = *connections[0];
};

} // namespace

TEST_F(ConnectionsTest, EachUserHasAShareAndTheOldestConnectionIsClosed)
{
    for (int i = 0; i < 4; ++i)
        connect(GUEST);
    EXPECT_THAT(closed(), ElementsAre(0)) << "at most three per user";
    for (int i = 0; i < 3; ++i)
        connect(OTHER_GUEST);
    for (int i = 0; i < 2; ++i)
        connect({true, false, 9});
    EXPECT_THAT(closed(), ElementsAre(0)) << "at most eight on the open channel";
    connect({true, false, 9});
    EXPECT_THAT(closed(), ElementsAre(0, 1)) << "of the user with the most connections";
    EXPECT_EQ(all.size(), 8U);
    for (int i = 0; i < 17; ++i)
        connect(OWNER);
    EXPECT_THAT(closed(), ElementsAre(0, 1, 10)) << "each channel has its own room";
    all.closeOldest();
    EXPECT_EQ(closed().size(), 4U);
    EXPECT_THAT(closed(), testing::Contains(4)) << "those of the open channel are closed first";
    // Connections in use by a thread are not closed for others.
    for (std::size_t i = 11; i < connections.size(); ++i)
        EXPECT_EQ(all.take(connections[i]->id()), connections[i]);
    connect(OWNER);
    EXPECT_EQ(connections.back(), nullptr) << "no connection can be closed";
    EXPECT_EQ(all.take(Connections::FIRST_ID), nullptr) << "it is closed";

    all.closeIdle(Clock::now() - 1s);
    EXPECT_EQ(closed().size(), 5U) << "no other is idle; only the refused one is closed";
    all.closeIdle(Clock::now() + 1s);
    EXPECT_EQ(all.size(), 16U) << "those in use by threads stay";
    all.watch(*connections[11], EPOLLIN);
    all.closeOldest();
    EXPECT_THAT(closed(), testing::Contains(11)) << "the owner's when there are no others";
    all.close(*connections[12]);
    EXPECT_EQ(all.size(), 14U);
}

TEST_F(ConnectionsTest, EachUserHasAShareOfMemoryAndTheHeaviestIsClosed)
{
    const auto hold = [&](std::size_t client, std::size_t bytes) {
        (void)all.take(connections[client]->id());
        const bool hasRoom = all.hold(*connections[client], bytes);
        all.watch(*connections[client], EPOLLIN);
        return hasRoom;
    };
    for (const Caller &caller : {OWNER, GUEST, GUEST, GUEST, OTHER_GUEST, OTHER_GUEST})
        connect(caller);
    EXPECT_TRUE(hold(1, 10 * MEGABYTE) && hold(2, 6 * MEGABYTE)) << "the share of a user";
    EXPECT_TRUE(hold(4, 16 * MEGABYTE));
    EXPECT_TRUE(hold(3, 1));
    EXPECT_THAT(closed(), ElementsAre(1)) << "the user's oldest connection that holds memory";
    EXPECT_TRUE(hold(2, 5 * MEGABYTE) && hold(3, 11 * MEGABYTE)) << "released memory is free again";
    EXPECT_THAT(closed(), ElementsAre(1));
    (void)all.take(connections[3]->id());
    EXPECT_FALSE(all.hold(*connections[3], limits::OPEN_USER_MEMORY + 1));
    connect({true, false, 9});
    EXPECT_TRUE(hold(6, 6 * MEGABYTE));
    EXPECT_THAT(closed(), ElementsAre(1, 2, 4)) << "one of the user with the most memory";

    connect({false, true, 2});
    EXPECT_EQ(all.holdReply(*connections[7]), limits::OWNER_MEMORY / limits::REPLY_PART);
    EXPECT_EQ(all.holdReply(*connections[7]),
              (limits::OWNER_MEMORY - limits::OWNER_MEMORY / limits::REPLY_PART) / limits::REPLY_PART);
    EXPECT_TRUE(all.hold(*connections[0], 0)) << "another user of the owner's channel";
    EXPECT_EQ(all.holdReply(*connections[6]), (limits::OPEN_USER_MEMORY - 6 * MEGABYTE) / limits::REPLY_PART);
}

TEST_F(ConnectionTest, AnswersCompleteRequestsAndWaitsForTheRest)
{
    EXPECT_EQ(connection.advance(fast), Wish::Read);
    const std::string request = framed(TAGS);
    for (const std::size_t cut : {2U, 7U}) {
        send(client, request.substr(0, cut));
        EXPECT_EQ(connection.advance(fast), Wish::Read);
        send(client, request.substr(cut));
        EXPECT_EQ(connection.advance(fast), Wish::Read);
        EXPECT_THAT(codes(client), ElementsAre(ReturnCode::Success));
    }
    for (int i = 0; i < limits::REQUESTS_PER_TURN + 1; ++i)
        send(client, request);
    EXPECT_EQ(connection.advance(fast), Wish::Turn) << "now others have a turn";
    EXPECT_EQ(codes(client).size(), static_cast<std::size_t>(limits::REQUESTS_PER_TURN));
    EXPECT_EQ(connection.advance(fast), Wish::Read);
    EXPECT_EQ(codes(client).size(), 1U);

    const std::string longest(limits::REQUEST_SIZE + 1, 'x');
    send(client, framed(longest).substr(0, 8));
    EXPECT_EQ(connection.advance(fast), Wish::Read);
    for (std::size_t left = longest.size() - 4; left > 0;) {
        const std::size_t step = std::min<std::size_t>(left, 60000);
        send(client, longest.substr(0, step));
        left -= step;
        EXPECT_EQ(connection.advance(fast), Wish::Read);
    }
    send(client, request);
    EXPECT_EQ(connection.advance(fast), Wish::Read);
    EXPECT_THAT(codes(client), ElementsAre(ReturnCode::LimitExceeded, ReturnCode::Success)) << "it is discarded";

    clients[client].reset();
    EXPECT_EQ(connection.advance(fast), Wish::Close);
}

TEST_F(ConnectionTest, WaitsForAClientThatTakesNoReply)
{
    local.store.write([&] {
        for (int i = 0; i < 200; ++i)
            local.store.facets().add({FacetKind::Tag, QString::number(i) + QString(1000, QLatin1Char('t'))});
        return true;
    });
    const int buffer = 4096;
    ::setsockopt(connection.fd(), SOL_SOCKET, SO_SNDBUF, &buffer, sizeof buffer);
    send(client, framed(TAGS) + framed(TAGS));
    EXPECT_EQ(connection.advance(fast), Wish::Write);
    std::vector<int> answers;
    const Clock::time_point before = connection.lastActivity();
    for (int i = 0; i < 1000 && answers.size() < 2; ++i) {
        for (const int code : codes(client))
            answers.push_back(code);
        connection.advance(fast);
    }
    EXPECT_THAT(answers, ElementsAre(0, 0));
    EXPECT_GT(connection.lastActivity(), before);
    EXPECT_EQ(connection.advance(fast), Wish::Read);
}

TEST_F(ConnectionTest, PassesOnRequestsOfOtherPoolsAndRunsThemFromTheStart)
{
    for (const auto sender : {Connection::Sender::ThisThread, Connection::Sender::NextThread}) {
        const Clock::time_point start = Clock::now();
        connection.noteArrival();
        send(client, framed(TAG_NOTHING) + framed(TAGS));
        EXPECT_EQ(connection.advance(fast), Wish::PassOn);
        EXPECT_EQ(connection.pool(), Pool::Writer);
        EXPECT_EQ(connection.requestSize(), TAG_NOTHING.size());
        const Deadline deadline = connection.deadline();
        EXPECT_GE(deadline, start + local.shared.requestTime);
        EXPECT_LE(deadline, Clock::now() + local.shared.requestTime);
        std::this_thread::sleep_for(2ms);
        for (int i = 0; i < 2; ++i) // it can run again
            connection.answerFirst(writer);
        EXPECT_EQ(connection.deadline(), deadline) << "the deadline is unchanged";
        EXPECT_THAT(codes(client), IsEmpty());
        EXPECT_EQ(connection.releaseKept(sender), sender == Connection::Sender::ThisThread ? Wish::Turn : Wish::Write);
        EXPECT_EQ(connection.requestSize(), 0U);
        EXPECT_GT(connection.lastActivity(), start);
        EXPECT_EQ(connection.advance(fast), Wish::Read);
        EXPECT_THAT(codes(client), ElementsAre(ReturnCode::NoSuchPlace, ReturnCode::Success));

        // The deadline of a request that was sent ahead starts with the previous reply.
        send(client, framed(TAG_NOTHING));
        EXPECT_EQ(connection.advance(fast), Wish::PassOn);
        EXPECT_GT(connection.deadline(), deadline);
        connection.answerFirst(writer);
        EXPECT_EQ(connection.releaseKept(Connection::Sender::ThisThread), Wish::Read);
        EXPECT_THAT(codes(client), ElementsAre(ReturnCode::NoSuchPlace));
    }
    // The writer may also have to pass a request on.
    send(client, framed(message(head(Type::GetPlaceFromSuggestion) + Fields{text("x")} + coordinate(0, 0, 0, 0, 0))));
    EXPECT_EQ(connection.advance(fast), Wish::PassOn);
    EXPECT_EQ(connection.pool(), Pool::Slow);
    connection.answerFirst(writer);
    EXPECT_EQ(connection.releaseKept(Connection::Sender::ThisThread), Wish::PassOn);
}

TEST_F(ConnectionTest, ReportsAnExhaustedShareOfMemory)
{
    const std::size_t other = connect(OWNER, false);
    ASSERT_TRUE(all.hold(*connections[other], limits::OWNER_MEMORY - 1000));
    send(client, framed(std::string(limits::UNCOUNTED_BYTES, 'x')) + framed(TAGS));
    EXPECT_EQ(connection.advance(fast), Wish::Read);
    EXPECT_THAT(codes(client), ElementsAre(ReturnCode::Busy, ReturnCode::Success)) << "short requests need no memory";
    connection.refuse(ReturnCode::TookTooLong);
    EXPECT_THAT(codes(client), ElementsAre(ReturnCode::TookTooLong));
    EXPECT_TRUE(all.hold(*connections[other], 0));
    ASSERT_TRUE(all.hold(*connections[other], limits::OWNER_MEMORY)) << "all memory is free again";
}

TEST_F(ConnectionsTest, TakeTurnsInAQueue)
{
    ConnectionQueue queue({2, 1});
    const Caller third = {true, false, 9};
    for (const Caller &caller : {GUEST, GUEST, OTHER_GUEST, third, OWNER, OWNER, OWNER})
        queue.push(*connections[connect(caller)]);
    std::vector<std::size_t> taken;
    const auto note = [&](const std::vector<Connection *> &next) {
        for (const Connection *each : next)
            taken.push_back(static_cast<std::size_t>(std::find(connections.begin(), connections.end(), each)
                                                     - connections.begin()));
    };
    note(queue.pop(3, 1));
    EXPECT_THAT(taken, ElementsAre(0, 2, 4)) << "one of each user, two of the open channel";
    note({queue.tryPop()});
    queue.end(OTHER_GUEST);
    note(queue.pop(2, 1));
    EXPECT_THAT(taken, ElementsAre(0, 2, 4, 5, 3, 6));
    queue.end(GUEST);
    note(queue.pop(9, 1));
    EXPECT_THAT(taken, ElementsAre(0, 2, 4, 5, 3, 6, 1));
    EXPECT_EQ(queue.tryPop(), nullptr);
    std::thread waiting([&] { EXPECT_THAT(queue.pop(1, 1), IsEmpty()); });
    queue.stop();
    waiting.join();
    queue.push(*connections[0]);
    EXPECT_EQ(queue.tryPop(), nullptr);
}
