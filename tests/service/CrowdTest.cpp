// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Limits.h"
#include "store/StatementPool.h"
#include "support/ManyClients.h"
#include "support/Placesd.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFileInfo>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace crowd;
using namespace requests;
using namespace placesd;
using namespace std::chrono_literals;

namespace
{

constexpr char OPEN[] = "places.external";
const std::string TAGS = message(head(9));
const std::string SLOW = message(head(18) + Fields{text("stuck")} + coordinate(0, 0, 0, 0, 0));

/// The number of clients whose connections the service closed.
int closedNow(const Clients &clients)
{
    return static_cast<int>(std::count_if(clients.begin(), clients.end(), [](const Descriptor &client) {
        char byte = 0;
        return ::recv(client.get(), &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0;
    }));
}

/// The same, but waits a while for a number.
int closed(const Clients &clients, int expected)
{
    for (int i = 0; i < 200 && closedNow(clients) != expected; ++i)
        std::this_thread::sleep_for(10ms);
    return closedNow(clients);
}

/// A place whose record has about four megabytes, none of which are searched.
std::string longPlace()
{
    constexpr int PROPERTIES = 16;
    Fields record = Fields{i32(1), i64(9), text(""), text("x-other"), flag(true)} + sample::providerFields()
                    + Fields{i32(PROPERTIES)};
    for (int i = 0; i < PROPERTIES; ++i)
        record = record + Fields{text("note " + std::to_string(10 + i)), text(std::string(250'000, 't'))};
    return message(head(1) + sample::commonFields(false, 0, -1) + Fields{i32(1)} + sample::locationFields() + record
                   + texts({}) + texts({}));
}

class Stopwatch
{
public:
    [[nodiscard]] std::chrono::nanoseconds time() const { return std::chrono::steady_clock::now() - m_start; }

private:
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace

TEST(ACrowdOfClients, LeavesRoomForOthers)
{
    Placesd service;
    const int share = static_cast<int>(limits::OPEN_USER_CONNECTIONS);
    const Clients first = connectMany(service, OPEN, share + 5);
    EXPECT_EQ(Placesd::code(TAGS, OPEN), 0);
    EXPECT_NEAR(closed(first, 5), 5, 1) << "the oldest made room";
    const Clients more = connectMany(service, OPEN, 1200);
    EXPECT_EQ(Placesd::code(TAGS), 0);
    EXPECT_EQ(closed(first, share + 5), share + 5);

    const Clients owners = connectMany(service, "places", 1000);
    send(owners, TAGS);
    const auto deadline = vela::system::channel::Clock::now() + 10s;
    for (const Descriptor &client : owners) {
        int reply[4] = {-1, -1, -1, -1};
        EXPECT_TRUE(vela::system::channel::receiveAll(client.get(), reply, sizeof reply, deadline));
        EXPECT_EQ(reply[1], 0);
    }
}

TEST(ACrowdOfClients, OfOneUserMakesRoomForThoseOfAnother)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be several users";
    Placesd service;
    ASSERT_EQ(::chmod(QFileInfo(service.path("places")).path().toLocal8Bit(), 0711), 0);
    const Clients few = connectMany(service, OPEN, 10, 1001);
    for (const uid_t user : {1002U, 1003U, 1004U})
        connectMany(service, OPEN, 1000, user);
    std::vector<Clients> many;
    for (const uid_t user : {1002U, 1003U, 1004U})
        many.push_back(connectMany(service, OPEN, static_cast<int>(limits::OPEN_USER_CONNECTIONS), user));
    EXPECT_EQ(Placesd::code(TAGS, OPEN), 0);
    EXPECT_EQ(closedNow(few), 0) << "the oldest, but not of the heaviest user";
    EXPECT_GT(closedNow(many[0]) + closedNow(many[1]) + closedNow(many[2]), 0);
}

TEST(ACrowdOfClients, HasNoMoreThanItsMemory)
{
    Placesd service;
    constexpr int PLACES = 8;
    for (int i = 0; i < PLACES; ++i)
        ASSERT_EQ(Placesd::code(longPlace()), 0);
    for (const char *channel : {OPEN, "places"}) {
        const Clients writers = connectMany(service, channel, 60);
        send(writers, longPlace(), 3'900'000);
        const Clients readers = connectMany(service, channel, 15);
        send(readers, everything());
        const Clients asking = connectMany(service, channel, 15);
        send(asking, TAGS);
        const Stopwatch watch;
        EXPECT_EQ(Placesd::code(find(5, 0, rule(13, 4, 7, "none", 0))), 0) << channel;
        EXPECT_LT(watch.time(), 2s);
#if !defined __SANITIZE_ADDRESS__ && !defined __SANITIZE_THREAD__
        EXPECT_LT(service.memory("VmRSS:"), 200) << channel;
#endif
    }
    // A reply without room for all ends early.
    std::size_t found = 0;
    int pages = 0;
    for (int count = 1; count > 0 && pages <= PLACES; ++pages) {
        const Clients client = connectMany(service, "places", 1);
        send(client, everything(static_cast<int>(found)));
        const auto deadline = vela::system::channel::Clock::now() + 10s;
        int length = 0;
        ASSERT_TRUE(vela::system::channel::receiveAll(client[0].get(), &length, sizeof length, deadline));
        std::vector<int> reply(static_cast<std::size_t>(length) / sizeof(int) + 1);
        ASSERT_TRUE(vela::system::channel::receiveAll(client[0].get(), reply.data(), static_cast<std::size_t>(length),
                                                      deadline));
        ASSERT_EQ(reply[0], 0);
        count = reply[2];
        found += static_cast<std::size_t>(count);
        // Behind the flag stand four numbers, and two for each place.
        const std::size_t behindFlag = static_cast<std::size_t>(4 + 2 * count);
        const int hasMore = reply[static_cast<std::size_t>(length) / sizeof(int) - behindFlag - 1] & 1;
        EXPECT_EQ(hasMore, found < PLACES ? 1 : 0);
    }
    EXPECT_EQ(found, PLACES);
    EXPECT_GT(pages, 2) << "the last one is empty";
}

TEST(ACrowdOfClients, LeavesThreadsForOthersAndDelaysNoStop)
{
    qputenv("GUIDE_REQUEST_SECONDS", "20");
    Placesd service({}, "placesd_with_guide");
    qunsetenv("GUIDE_REQUEST_SECONDS");
    const Clients slow = connectMany(service, OPEN, 20);
    send(slow, SLOW);
    // Until they have all threads that they can get.
    std::this_thread::sleep_for(300ms);
    const Stopwatch answer;
    EXPECT_EQ(Placesd::code(message(head(18) + Fields{text("fast")} + coordinate(0, 0, 0, 0, 0))), 0);
    EXPECT_LT(answer.time(), 3s);
    const Clients owners = connectMany(service, "places", 20);
    send(owners, SLOW);
    const Stopwatch stop;
    service.stop();
    EXPECT_LT(stop.time(), 5s);
}

TEST(AService, GoesOnWithoutDescriptorsAndWithoutALog)
{
    Placesd service;
    service.stop();
    const std::string pipe = service.path("log").toStdString();
    ASSERT_EQ(::unlink(pipe.c_str()) + ::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    service.start();
    ASSERT_EQ(::unlink(pipe.c_str()), 0);
    const std::string backup = message(head(15) + Fields{text("/none\nplacesd error: forged/x.db")});
    EXPECT_EQ(Placesd::code(backup), 68);
    char log[4096] = {};
    EXPECT_GT(::read(reader, log, sizeof log - 1), 0);
    EXPECT_THAT(std::string(log), testing::HasSubstr("/none?placesd error: forged"));
    ::close(reader);
    EXPECT_EQ(Placesd::code(backup), 68) << "nobody reads the log";

    const Clients some = connectMany(service, OPEN, 20);
    ASSERT_EQ(Placesd::code(TAGS), 0);
    rlimit before = {};
    const rlimit none = {1, 20000};
    ASSERT_EQ(::prlimit(service.pid(), RLIMIT_NOFILE, &none, &before), 0);
    const Clients waiting = connectMany(service, "places", 5);
    send(waiting, TAGS);
    EXPECT_EQ(closed(some, 20), 20) << "these were to give their descriptors";
    EXPECT_EQ(closedNow(waiting), 0);
    ASSERT_EQ(::prlimit(service.pid(), RLIMIT_NOFILE, &before, nullptr), 0);
    EXPECT_EQ(Placesd::code(TAGS), 0);
}

TEST(AStatementPool, KeepsNoBoundValuesAndBoundedMemory)
{
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    StatementPool pool(database);
    std::vector<std::string> texts;
    for (int i = 0; i < 2000; ++i)
        texts.push_back("SELECT ?1, " + std::to_string(i));
    for (const std::string &text : texts) {
        const auto row = pool.take(text.c_str());
        row->bind(1, std::string(10000, 'x'));
        row->executeStep();
    }
    std::size_t bytes = 0;
    for (sqlite3_stmt *kept = nullptr; (kept = sqlite3_next_stmt(database.getHandle(), kept)) != nullptr;)
        bytes += static_cast<std::size_t>(sqlite3_stmt_status(kept, SQLITE_STMTSTATUS_MEMUSED, 0));
    EXPECT_LE(bytes, limits::IDLE_STATEMENT_MEMORY);
    EXPECT_GT(bytes, 0U);
}
