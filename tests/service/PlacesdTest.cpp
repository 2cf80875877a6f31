// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Placesd.h"
#include "Limits.h"
#include "manager/PlaceManagerPrivate.h"
#include "places/PlaceManager.h"
#include "support/ManyClients.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace crowd;
using namespace requests;
using namespace placesd;
using namespace std::chrono_literals;
using namespace vela::platform::places;

namespace
{

using vela::system::channel::Clock;

constexpr char OPEN[] = "places.external";
const std::string TAGS = message(head(Type::GetTags));
const std::string SLOW =
    message(head(Type::GetPlaceFromSuggestion) + Fields{text("stuck")} + coordinate(0, 0, 0, 0, 0));

/// The number of clients whose connections the service closed.
int closedNow(const Clients &clients)
{
    return static_cast<int>(std::count_if(clients.begin(), clients.end(), [](const Descriptor &client) {
        char byte = 0;
        return ::recv(client.get(), &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0;
    }));
}

/// Waits a while until this number is reached.
int closed(const Clients &clients, int expected)
{
    for (int i = 0; i < 200 && closedNow(clients) != expected; ++i)
        std::this_thread::sleep_for(10ms);
    return closedNow(clients);
}

/// A place whose record has about four megabytes that are not searched.
std::string longPlace()
{
    constexpr int PROPERTIES = 16;
    Fields record = Fields{i32(1), i64(9), text(""), text("x-other"), flag(true)} + sample::providerFields()
                    + Fields{i32(PROPERTIES)};
    for (int i = 0; i < PROPERTIES; ++i)
        record = record + Fields{text("note " + std::to_string(10 + i)), text(std::string(250'000, 't'))};
    return message(head(Type::AddPlace) + sample::commonFields(false, 0, -1) + Fields{i32(1)} + sample::locationFields()
                   + record + texts({}) + texts({}));
}

} // namespace

TEST(Placesd, KeepsConnectionsForOthersInACrowd)
{
    Placesd service;
    const int share = static_cast<int>(limits::OPEN_USER_CONNECTIONS);
    const Clients first = connectMany(service, OPEN, share + 5);
    EXPECT_EQ(Placesd::code(TAGS, OPEN), 0);
    EXPECT_NEAR(closed(first, 5), 5, 1) << "the oldest ones are closed";
    const Clients more = connectMany(service, OPEN, 1200);
    EXPECT_EQ(Placesd::code(TAGS), 0);
    EXPECT_EQ(closed(first, share + 5), share + 5);

    const Clients owners = connectMany(service, "places", 1000);
    send(owners, TAGS);
    const auto deadline = Clock::now() + 10s;
    for (const Descriptor &client : owners) {
        int reply[4] = {-1, -1, -1, -1};
        EXPECT_TRUE(vela::system::channel::receiveAll(client.get(), reply, sizeof reply, deadline));
        EXPECT_EQ(reply[1], 0);
    }
}

TEST(Placesd, LimitsTheMemoryOfManyClients)
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
        const auto start = Clock::now();
        EXPECT_EQ(Placesd::code(find(5, 0, rule(Kind::UnaryString, Rules::Name, Operator::Contains, "none"))), 0)
            << channel;
        EXPECT_LT(Clock::now() - start, 2s);
#if !defined __SANITIZE_ADDRESS__ && !defined __SANITIZE_THREAD__
        EXPECT_LT(service.memory("VmRSS:"), 200) << channel;
#endif
    }
}

TEST(Placesd, KeepsThreadsForOthersAndStopsInTimeInACrowd)
{
    Placesd service({}, "placesd_with_guide");
    const Clients slow = connectMany(service, OPEN, 20);
    send(slow, SLOW);
    // Waits until they use all threads that they can get.
    std::this_thread::sleep_for(300ms);
    const auto start = Clock::now();
    EXPECT_EQ(
        Placesd::code(message(head(Type::GetPlaceFromSuggestion) + Fields{text("fast")} + coordinate(0, 0, 0, 0, 0))),
        0);
    EXPECT_LT(Clock::now() - start, 3s);
    const Clients owners = connectMany(service, "places", 20);
    send(owners, SLOW);
    const auto stop = Clock::now();
    service.stop();
    EXPECT_LT(Clock::now() - stop, 5s);
}

TEST(Placesd, WorksWithoutDescriptorsAndWithoutALog)
{
    Placesd service;
    service.stop();
    const std::string pipe = service.path("log").toStdString();
    ASSERT_EQ(::unlink(pipe.c_str()) + ::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    service.start();
    ASSERT_EQ(::unlink(pipe.c_str()), 0);
    const std::string backup = message(head(Type::Backup) + Fields{text("/none\nplacesd error: forged/x.db")});
    EXPECT_EQ(Placesd::code(backup), orix_places_protocol::BackupFailed);
    char log[4096] = {};
    EXPECT_GT(::read(reader, log, sizeof log - 1), 0);
    EXPECT_THAT(std::string(log), testing::HasSubstr("/none?placesd error: forged"));
    ::close(reader);
    EXPECT_EQ(Placesd::code(backup), orix_places_protocol::BackupFailed) << "its log is a closed pipe";

    const Clients some = connectMany(service, OPEN, 20);
    ASSERT_EQ(Placesd::code(TAGS, OPEN), 0) << "it is accepted after the others";
    rlimit before = {};
    const rlimit none = {1, 20000};
    ASSERT_EQ(::prlimit(service.pid(), RLIMIT_NOFILE, &none, &before), 0);
    const Clients waiting = connectMany(service, "places", 5);
    send(waiting, TAGS);
    EXPECT_EQ(closed(some, 20), 20) << "their descriptors are needed";
    EXPECT_EQ(closedNow(waiting), 0);
    ASSERT_EQ(::prlimit(service.pid(), RLIMIT_NOFILE, &before, nullptr), 0);
    EXPECT_EQ(Placesd::code(TAGS), 0);
}

TEST(Placesd, StopsInTimeWithBusyClients)
{
    Placesd service;
    std::atomic<bool> done = false;
    std::atomic<int> answered = 0;
    std::string many;
    for (int i = 0; i < 100; ++i)
        many += message({i32(static_cast<int>(TAGS.size()))}) + TAGS;
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        // Connects all clients before the first one counts: the service may have stopped when a thread gets to run.
        clients.emplace_back([&, socket = connectTo(service.path("places").toStdString())] {
            std::vector<char> replies(1 << 16);
            // More requests are always in flight, so the service never runs out of input.
            for (std::size_t next = 0; !done;) {
                const ssize_t sent =
                    ::send(socket.get(), many.data() + next, many.size() - next, MSG_DONTWAIT | MSG_NOSIGNAL);
                if (sent < 0 && errno != EAGAIN)
                    return;
                next = (next + static_cast<std::size_t>(std::max<ssize_t>(sent, 0))) % many.size();
                while (::recv(socket.get(), replies.data(), replies.size(), MSG_DONTWAIT) > 0)
                    ++answered;
            }
        });
    }
    for (int i = 0; i < 20000 && answered < 100; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_GE(answered, 100);
    EXPECT_EQ(Placesd::code(TAGS), 0);
    service.stop();
    done = true;
    for (std::thread &client : clients)
        client.join();
}

TEST(Placesd, AnswersShortRequestsWhileLongOnesRun)
{
    Placesd service;
    sample::FullPlace place(-1);
    AuxiliaryData record(QStringLiteral("x-long"));
    for (int i = 0; i < 14; ++i)
        record.addProperty(QString::number(i), QStringLiteral("ab ").repeated(80000));
    place.data().m_auxiliaryData = {record};
    ASSERT_EQ(PlaceManager().addPlace(&place), Error::Success);
    std::vector<Fields> values;
    for (int i = 0; i < 400; ++i)
        values.push_back(rule(Kind::UnaryString, Rules::AuxiliaryValue, Operator::Contains, "no" + std::to_string(i)));
    const std::string longFind = find(9, 0, rule(Kind::Disjoint, {rule(Kind::Or, values)}));

    const Clients clients = connectMany(service, "places", 8);
    send(clients, longFind);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Placesd::code(TAGS), 0);
    for (const Descriptor &client : clients) {
        char byte = 0;
        EXPECT_EQ(::recv(client.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT), -1) << "the long requests are still running";
    }
}

TEST(Placesd, RequiresTheKeyOfItsSessionObject)
{
    QTemporaryDir pps;
    Placesd service({QStringLiteral("--pps-root"), pps.path()});
    QFile object(pps.filePath(QStringLiteral("services/pim/session?wait")));
    ASSERT_TRUE(object.open(QIODevice::ReadOnly));
    EXPECT_EQ(object.permissions() & 0x0077, 0) << "not readable by others";
    const std::string text = object.readAll().toStdString().substr(30);
    const std::size_t start = text.find("\"session\":\"") + 11;
    const std::string key = text.substr(start, text.find('"', start) - start);
    EXPECT_EQ(key.size(), 32U);
    EXPECT_EQ(Placesd::code(TAGS), orix_places_protocol::NotPermitted);
    EXPECT_EQ(Placesd::code(message(head(Type::GetTags, 0, key))), 0);
}

TEST(Placesd, DoesNotTakeTheChannelsOfARunningService)
{
    const Placesd service;
    QProcess second;
    second.start(QStringLiteral(PROGRAMS "/placesd"), {QStringLiteral("--database"), service.path("other.db")});
    EXPECT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_EQ(Placesd::code(TAGS), 0);
}
