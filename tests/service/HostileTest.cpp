// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Channel.h"
#include "manager/PlaceManagerPrivate.h"
#include "places/PlaceManager.h"
#include "support/HostileRequests.h"
#include "support/Placesd.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>

#include <atomic>
#include <cstring>
#include <msgclient.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/socket.h>
#include <thread>

using namespace requests;
using namespace wire;
using vela::system::channel::Descriptor;
using namespace vela::platform::places;

namespace
{

std::string manyWords(int count)
{
    std::string words;
    for (int i = 0; i < count; ++i)
        words += "w" + std::to_string(i) + " ";
    return words;
}

const std::string TAGS = message(head(9));
const std::string ADD = message(head(1, 2) + sample::placeFields(-1, ""));

} // namespace

TEST(AService, AnswersWhatItDoesNotUnderstandWithACodeAndGoesOn)
{
    Placesd service;
    const Fields everything = rule(1, 0, 1, "", 0);
    Fields deep = everything;
    Fields wide = rule(4, 0, 1, "", 600);
    for (int i = 0; i < 600; ++i)
        wide = wide + everything;
    Fields greedy = rule(4, 0, 1, "", 9);
    for (int i = 0; i < 9; ++i)
        greedy = greedy + rule(13, 17, 2, "", 0);
    for (int i = 0; i < 30; ++i)
        deep = rule(5, 0, 1, "", 1) + deep;
    const struct
    {
        const char *name;
        std::string request;
        int code;
    } cases[] = {
        {"nothing", "", 50},
        {"an unknown type", message(head(99)), 66},
        {"a place that is cut", ADD.substr(0, ADD.size() - 1), 50},
        {"a place with more behind it", ADD + "ZZZZ", 50},
        {"a place that has an id", message(head(1, 2) + sample::placeFields()), 63},
        {"too many places", find(10001, 0, everything), 62},
        {"a negative offset", find(1, -1, everything), 62},
        {"a rule too deep", find(1, 0, deep), 62},
        {"a rule too wide", find(1, 0, wide), 62},
        {"a rule that asks too many sources", find(1, 0, greedy), 62},
        {"members that are not there", find(1, 0, rule(2, 0, 1, "", 0x7fffffff)), 50},
        {"an unknown field", find(1, 0, rule(3, 9, 1, "", 0)), 66},
        {"a term of many words", find(1, 0, rule(13, 4, 7, manyWords(65), 0)), 62},
        {"a request too long for its memory", std::string(5 * 1024 * 1024, 'x'), 62},
        {"a negative number of members", find(1, 0, rule(2, 0, 1, "", -1)), 50},
        {"a negative count", find(-1, 0, everything), 62},
        {"an unknown operator", find(1, 0, rule(13, 4, 77, "x", 0)), 66},
        {"a long term", find(1, 0, rule(13, 4, 2, std::string(4097, 'x'), 0)), 62},
        {"a term that is SQL", find(1, 0, rule(13, 4, 7, "\") OR 1=1 --", 0)), 0},
        {"a term that is no text", find(1, 0, rule(13, 4, 2, std::string("\xFF\x00\xC0", 3), 0)), 0},
    };
    for (const auto &row : cases)
        EXPECT_EQ(Placesd::code(row.request), row.code) << row.name;
    EXPECT_EQ(Placesd::exchange(TAGS), message({i32(0), i32(265), i32(0)})) << "nothing was stored by any of that";
}

TEST(AService, DoesNotStoreALocationThatSaysNothing)
{
    Placesd service;
    const Fields corner =
        coordinate(sample::NOT_SET, sample::NOT_SET, sample::NOT_SET, sample::NO_ACCURACY, sample::NO_ACCURACY);
    const Fields silent = Fields{i64(-1), i32(-1)} + corner + Fields{text(""), text(""), i32(-2147483647 - 1)}
                          + Fields(10, text("")) + texts({}) + texts({}) + Fields{i32(0), text(""), text("")} + corner
                          + corner;
    const auto place = [](const Fields &locations) {
        return message(head(1) + sample::commonFields(false, 0, -1) + locations + Fields{i32(0), i32(0), i32(0)});
    };
    EXPECT_EQ(Placesd::code(place(Fields{i32(1)} + silent)), 57);
    EXPECT_EQ(Placesd::code(place({i32(1)})), 57) << "counted and not written";
    EXPECT_EQ(Placesd::code(place(Fields{i32(3)} + silent + sample::locationFields())), 0) << "one more is not written";
    EXPECT_EQ(Placesd::code(message(head(7) + Fields{i64(1), text("beach")})), 0) << "the place can be read again";
}

TEST(AService, OutlivesRandomBytes)
{
    Placesd service;
    ASSERT_EQ(Placesd::code(ADD), 0);
    HostileRequests requests(20261124);
    for (int i = 0; i < 3000; ++i)
        EXPECT_NE(Placesd::code(requests.next()), -1) << i;
    EXPECT_TRUE(service.isRunning());
    EXPECT_EQ(Placesd::code(TAGS), 0);
}

TEST(AService, IsNotHeldUpByBusyClientsAndEndsAmongThem)
{
    Placesd service;
    std::atomic<bool> done = false;
    std::atomic<int> answered = 0;
    std::string many;
    for (int i = 0; i < 100; ++i)
        many += message({i32(static_cast<int>(TAGS.size()))}) + TAGS;
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        // All are connected before the first is counted: the service may be gone when a thread gets to run.
        clients.emplace_back([&, socket = connectTo(service.path("places").toStdString())] {
            std::vector<char> replies(1 << 16);
            // More requests are always under way, so the service never finds nothing to read.
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
    while (answered < 100)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(Placesd::code(TAGS), 0);
    service.stop();
    done = true;
    for (std::thread &client : clients)
        client.join();
}

TEST(AService, AnswersShortRequestsWhileLongOnesRun)
{
    Placesd service;
    Place place;
    sample::fill(place, PlaceId::UNDEFINED_PERSISTED_ID);
    AuxiliaryData record(QStringLiteral("x-long"));
    for (int i = 0; i < 14; ++i)
        record.addProperty(QString::number(i), QStringLiteral("ab ").repeated(80000));
    PlacePrivate::privateFromPublic(&place)->m_auxiliaryData = {record};
    ASSERT_EQ(PlaceManager().addPlace(&place), Error::Success);
    Fields anyValue = {i32(4), i32(0), i32(1), text(""), text(""), i32(0), i32(400)};
    for (int i = 0; i < 400; ++i)
        anyValue = anyValue + rule(13, 2, 7, "no" + std::to_string(i), 0);
    const std::string longFind = find(9, 0, rule(5, 0, 1, "", 1) + anyValue);

    std::vector<Descriptor> clients;
    for (int i = 0; i < 8; ++i) {
        clients.push_back(connectTo(service.path("places").toStdString()));
        ASSERT_TRUE(vela::system::channel::sendMessage(clients.back().get(), longFind.data(),
                                                       static_cast<std::uint32_t>(longFind.size()),
                                                       vela::system::channel::Clock::now() + std::chrono::seconds(9)));
    }
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Placesd::code(TAGS), 0);
    for (const Descriptor &client : clients) {
        char byte = 0;
        EXPECT_EQ(::recv(client.get(), &byte, 1, MSG_PEEK | MSG_DONTWAIT), -1) << "the long ones are still under way";
    }
}

TEST(AService, AnswersAConnectionInOrderAndDelaysNoOther)
{
    Placesd service;
    ASSERT_EQ(Placesd::code(ADD), 0);
    const struct
    {
        std::string request;
        int type;
    } requests[] = {{ADD, 1},
                    {TAGS, 9},
                    {message(head(12) + Fields{i64(1), text(""), text(""), text("cafe")}), 12},
                    {message(head(7) + Fields{i64(1), text("beach")}), 7}};
    constexpr unsigned COUNT = 1200; // whose replies no socket buffer holds
    const auto deadline = vela::system::channel::Clock::now() + std::chrono::seconds(30);
    const Descriptor socket = connectTo(service.path("places").toStdString());
    std::thread sender([&] {
        for (unsigned i = 0; i < COUNT; ++i) {
            const std::string &bytes = requests[i % std::size(requests)].request;
            EXPECT_TRUE(vela::system::channel::sendMessage(socket.get(), bytes.data(),
                                                           static_cast<std::uint32_t>(bytes.size()), deadline));
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(Placesd::code(ADD), 0) << "while one client takes none of its replies";
    for (unsigned i = 0; i < COUNT; ++i) {
        std::uint32_t length = 0;
        EXPECT_TRUE(vela::system::channel::receiveAll(socket.get(), &length, sizeof length, deadline));
        std::vector<int> reply(length / sizeof(int) + 2);
        EXPECT_TRUE(vela::system::channel::receiveAll(socket.get(), reply.data(), length, deadline));
        EXPECT_EQ(reply[0], 0) << i;
        EXPECT_EQ(reply[1], 256 + requests[i % std::size(requests)].type) << i;
    }
    sender.join();
}

TEST(APerimeter, IsThatOfThePlaceOrNone)
{
    Placesd service;
    const Fields fetch = {i64(1), text(""), text(""), text("")};
    EXPECT_EQ(Placesd::code(message(head(1, 1) + sample::placeFields(-1, ""))), 60);
    ASSERT_EQ(Placesd::code(ADD), 0);
    EXPECT_EQ(Placesd::code(message(head(12, 1) + fetch)), 60);
    EXPECT_EQ(Placesd::code(message(head(12, 2) + fetch)), 0);
    EXPECT_EQ(Placesd::code(message(head(4, 1) + Fields{i64(1)})), 60);
    EXPECT_EQ(Placesd::code(message(head(5, 2) + sample::placeFields(1))), 0);
    EXPECT_EQ(Placesd::code(message(head(4, 0) + Fields{i64(1)})), 0);
}

TEST(ASessionKey, IsAskedForWhereThereIsASessionObject)
{
    QTemporaryDir pps;
    Placesd service({QStringLiteral("--pps-root"), pps.path()});
    QFile object(pps.filePath(QStringLiteral("services/pim/session?wait")));
    ASSERT_TRUE(object.open(QIODevice::ReadOnly));
    EXPECT_EQ(object.permissions() & 0x0077, 0) << "nobody else may read it";
    const std::string text = object.readAll().toStdString().substr(30);
    const std::size_t start = text.find("\"session\":\"") + 11;
    const std::string key = text.substr(start, text.find('"', start) - start);
    EXPECT_EQ(key.size(), 32U);
    EXPECT_EQ(Placesd::code(TAGS), 60);
    EXPECT_EQ(Placesd::code(message(head(9, 0, key + "x"))), 60);
    EXPECT_EQ(Placesd::code(message(head(9, 0, key))), 0);
}

TEST(AService, LeavesAloneWhatIsAnothersOrNewerThanItself)
{
    Placesd service;
    const auto start = [](const QString &database) {
        QProcess process;
        process.start(QStringLiteral(PROGRAMS "/placesd"), {QStringLiteral("--database"), database});
        EXPECT_TRUE(process.waitForFinished(20000));
        return process.exitCode();
    };
    EXPECT_EQ(start(service.path("other.db")), 1) << "the channels have a service already";
    EXPECT_EQ(Placesd::code(TAGS), 0);
    service.kill();
    const QString newer = service.path("newer.db");
    SQLite::Database(newer.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("PRAGMA user_version=99");
    EXPECT_EQ(start(newer), 1);
}
