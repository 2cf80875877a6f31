// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceStorageManager.h"
#include "places/PlaceHeader.h"
#include "search/WorkerQueue.h"
#include "support/EventLoop.h"
#include "support/FakeChannel.h"
#include "support/FakeSystem.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QThread>
#include <QtTest/QSignalSpy>

#include <atomic>
#include <cstring>
#include <stdexcept>
#include <thread>

using namespace vela::platform::places;
using namespace wire;
using orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;

namespace
{

MessageType typeOf(const std::string &request)
{
    int type = 0;
    std::memcpy(&type, request.data(), sizeof type);
    return static_cast<MessageType>(type);
}

/// Answers as a service does that stores one place, number 42.
std::string answer(const std::string &request)
{
    const MessageType type = typeOf(request);
    switch (type) {
    case MessageType::AddPlace:
        return FakeChannel::reply(type, {i64(42)});
    case MessageType::GetPlace:
        return FakeChannel::reply(type, sample::placeFields());
    case MessageType::Unfav:
        return FakeChannel::reply(type, {flag(true)});
    case MessageType::GetPlaceFromSuggestion:
        return FakeChannel::reply(type, sample::placeFields(-1));
    case MessageType::GetHeaderFromFullPlace:
        return FakeChannel::reply(type, sample::headerFields());
    default:
        return FakeChannel::reply(type, {});
    }
}

class PlaceStorageManagerTest : public testing::Test
{
protected:
    PlaceStorageManagerTest() { channel.answerWith(answer); }
    ~PlaceStorageManagerTest() override { channel.release(); } // for a test that has failed before

    bool arrive(int count)
    {
        return EventLoop::runUntil([&] { return signals.size() >= count; });
    }
    PlaceStorageReply reply(int index) { return signals[index][0].value<PlaceStorageReply>(); }
    /// The types of the requests so far.
    std::vector<MessageType> types()
    {
        std::vector<MessageType> types;
        for (const std::string &request : channel.requests())
            types.push_back(typeOf(request));
        return types;
    }
    /// The same as texts: "get" for GetPlace, and for AddTag its tag of a single letter.
    std::vector<std::string> requests()
    {
        std::vector<std::string> texts;
        for (const std::string &request : channel.requests())
            texts.push_back(typeOf(request) == MessageType::GetPlace ? "get" : request.substr(24));
        return texts;
    }
    void addTags(const char *tags, const QVariant &tag = QVariant())
    {
        for (const char *each = tags; *each != '\0'; ++each)
            manager->addTag(42, QString(QLatin1Char(*each)), tag);
    }

    EventLoop loop;
    FakeSystem system;
    FakeChannel channel;
    std::unique_ptr<PlaceStorageManager> manager = std::make_unique<PlaceStorageManager>();
    QSignalSpy signals{manager.get(), &PlaceStorageManager::finished};
};

} // namespace

TEST_F(PlaceStorageManagerTest, EveryCallIsReportedWithWhatBecameOfThePlaceThoughItsObjectIsGone)
{
    const auto withPlace = [this](qint64 id, auto call) {
        sample::FullPlace place(id);
        return (manager.get()->*call)(place, QVariant());
    };
    const auto withHeader = [this](qint64 id, auto call) {
        PlaceHeader header;
        AbstractPlacePrivate::privateFromPublic(&header)->setId(id);
        header.setProperty("searchLatitude", 47.5);
        return (manager.get()->*call)(header, QVariant());
    };
    using Manager = PlaceStorageManager;
    const auto anyPlace = [](int (Manager::*call)(const AbstractPlace &, const QVariant &)) { return call; };
    const struct
    {
        const char *name;
        std::function<int()> call;
        std::vector<MessageType> requests;
        qint64 id;
        Error::Type status;
        bool hasPlace;
    } rows[] = {
        {"add",
         [&] { return withPlace(-1, &Manager::addPlace); },
         {MessageType::AddPlace, MessageType::GetHeaderFromFullPlace, MessageType::GetPlace},
         42,
         Error::Success,
         true},
        {"add again", [&] { return withPlace(42, &Manager::addPlace); }, {}, 42, Error::InvalidArgument, false},
        {"update",
         [&] { return withPlace(42, &Manager::updatePlace); },
         {MessageType::UpdatePlace},
         42,
         Error::Success,
         true},
        {"remove", [&] { return manager->removePlace(42); }, {MessageType::RemovePlace}, 42, Error::Success, false},
        {"use", [&] { return manager->usePlace(42); }, {MessageType::IncrementUsage}, 42, Error::Success, false},
        {"use found",
         [&] { return withHeader(42, anyPlace(&Manager::usePlace)); },
         {MessageType::IncrementUsage},
         42,
         Error::Success,
         false},
        {"fav stored",
         [&] { return withPlace(42, &Manager::fav); },
         {MessageType::GetPlace, MessageType::UpdatePlace},
         42,
         Error::Success,
         true},
        {"fav new",
         [&] { return withPlace(-1, &Manager::fav); },
         {MessageType::AddPlace, MessageType::GetHeaderFromFullPlace, MessageType::GetPlace},
         42,
         Error::Success,
         true},
        {"fav found",
         [&] { return withHeader(-1, &Manager::fav); },
         {MessageType::GetPlaceFromSuggestion, MessageType::AddPlace, MessageType::GetHeaderFromFullPlace,
          MessageType::GetPlace},
         42,
         Error::Success,
         true},
        {"unfav",
         [&] { return withHeader(42, &Manager::unfav); },
         {MessageType::GetPlace, MessageType::Unfav},
         42,
         Error::Success,
         true},
        {"unfav new", [&] { return withPlace(-1, &Manager::unfav); }, {}, -1, Error::InvalidArgument, false},
        {"untag",
         [&] { return manager->removeTag(42, QStringLiteral("a")); },
         {MessageType::RemoveTag},
         42,
         Error::Success,
         false},
        {"get", [&] { return manager->getPlace(42); }, {MessageType::GetPlace}, 42, Error::Success, true},
        {"get found",
         [&] { return withHeader(-1, anyPlace(&Manager::getPlace)); },
         {MessageType::GetPlaceFromSuggestion},
         -1,
         Error::Success,
         true},
    };
    for (const auto &row : rows) {
        const std::size_t before = channel.requestCount();
        const int job = row.call();
        ASSERT_TRUE(arrive(1)) << row.name;
        const std::vector<MessageType> all = types();
        EXPECT_EQ(std::vector<MessageType>(all.begin() + static_cast<int>(before), all.end()), row.requests)
            << row.name;
        EXPECT_EQ(reply(0).jobId(), job) << row.name;
        EXPECT_EQ(reply(0).status(), row.status) << row.name;
        EXPECT_EQ(reply(0).placeId(), row.id) << row.name;
        ASSERT_EQ(!reply(0).place().isNull(), row.hasPlace) << row.name;
        EXPECT_TRUE(!row.hasPlace || reply(0).place()->thread() == manager->thread()) << row.name;
        signals.clear();
    }
    EXPECT_NE(channel.requests().back().find(f64(47.5).bytes), std::string::npos) << "where the user searched";
}

TEST_F(PlaceStorageManagerTest, ChangesAreMadeInTheirOrderAndFetchesOvertakeThem)
{
    channel.holdAfter(0);
    addTags("abc");
    const int fetch = manager->getPlace(42, QStringLiteral("fetch"));
    ASSERT_TRUE(channel.waitForRequests(2));
    EventLoop::runOut();
    EXPECT_THAT(requests(), testing::UnorderedElementsAre("a", "get")) << "never two changes at once";
    channel.release();
    ASSERT_TRUE(arrive(4));
    std::vector<std::string> changes = requests();
    changes.erase(std::find(changes.begin(), changes.end(), "get"));
    EXPECT_THAT(changes, ElementsAre("a", "b", "c"));
    int last = 0;
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(reply(i).tag(), reply(i).jobId() == fetch ? QVariant(QStringLiteral("fetch")) : QVariant());
        EXPECT_TRUE(reply(i).jobId() == fetch || reply(i).jobId() > std::exchange(last, reply(i).jobId()));
    }
}

TEST_F(PlaceStorageManagerTest, ACancelledJobIsNeverReportedWhereverItIsAndTheNextChangeWaitsForItsEnd)
{
    // Of the tag to be cancelled one reply has not arrived, one change is at the service and one waits; later there is
    // a fetch at the service.
    channel.holdAfter(1);
    addTags("ab", 1);
    addTags("c", 2);
    addTags("d", 1);
    ASSERT_TRUE(channel.waitForRequests(2));
    manager->cancel(1);
    manager->getPlace(42, 1);
    ASSERT_TRUE(channel.waitForRequests(3));
    manager->cancel(1);
    EXPECT_THAT(requests(), ElementsAre("a", "b", "get")) << "the service may still make the cancelled change";
    channel.release();
    ASSERT_TRUE(arrive(1));
    EventLoop::runOut();
    ASSERT_EQ(signals.size(), 1);
    EXPECT_EQ(reply(0).tag(), QVariant(2));
    EXPECT_THAT(requests(), ElementsAre("a", "b", "get", "c"));
}

TEST_F(PlaceStorageManagerTest, AFailureComesWithItsReason)
{
    channel.answerWith([](const std::string &) {
        return FakeChannel::reply(MessageType::GetPlace, ReturnCode::StorageFailed, {text("no room")});
    });
    manager->getPlace(42);
    ASSERT_TRUE(arrive(1));
    EXPECT_EQ(reply(0).status(), Error::StorageFailed);
    EXPECT_EQ(reply(0).reason(), QStringLiteral("no room"));
    channel.answerWith([](const std::string &) -> std::string { throw std::runtime_error("anything"); });
    manager->getPlace(42);
    manager->removePlace(42);
    ASSERT_TRUE(arrive(3));
    for (const int i : {1, 2}) {
        EXPECT_EQ(reply(i).status(), Error::Unspecified);
        EXPECT_EQ(reply(i).reason(), QString());
        EXPECT_EQ(reply(i).placeId(), 42);
    }
}

TEST_F(PlaceStorageManagerTest, DestroyingMakesTheChangesThatWaitAndReportsNothing)
{
    channel.holdAfter(0);
    addTags("abc");
    addTags("d", 1);
    manager->getPlace(42);
    ASSERT_TRUE(channel.waitForRequests(2));
    manager->getPlace(42);
    manager->cancel(1);
    std::thread service([this] {
        QThread::msleep(50);
        channel.release();
    });
    manager.reset();
    EXPECT_EQ(channel.openHandles(), 0);
    service.join();
    EventLoop::runOut();
    EXPECT_THAT(requests(), testing::UnorderedElementsAre("a", "get", "b", "c")) << "no fetch that was not begun";
    EXPECT_TRUE(signals.isEmpty());
}

TEST_F(PlaceStorageManagerTest, AManagerMayBeDestroyedByASlotAndWhileItSaves)
{
    QObject::connect(manager.get(), &PlaceStorageManager::finished, [this] { manager.reset(); });
    addTags("abc");
    ASSERT_TRUE(EventLoop::runUntil([this] { return !manager; }));
    EXPECT_EQ(signals.size(), 1);
    EXPECT_EQ(channel.requestCount(), 3U);
    const int threads = EventLoop::threads() + 1; // a sanitizer may start one of its own
    const std::size_t before = channel.requestCount();
    for (int i = 0; i < EventLoop::managers(); ++i) {
        PlaceStorageManager saving;
        sample::FullPlace place;
        saving.updatePlace(place);
        saving.getPlace(place);
        saving.fav(place);
        if (i % 2 == 1)
            QCoreApplication::processEvents();
    }
    EXPECT_EQ(channel.openHandles(), 0);
    EXPECT_GE(channel.requestCount(), before + std::size_t{3} * static_cast<std::size_t>(EventLoop::managers()));
    EXPECT_TRUE(EventLoop::runUntil([&] { return EventLoop::threads() <= threads; }));
}

TEST(WorkerQueue, BeginsNoOrderedJobThatIsTooLate)
{
    struct Job
    {
        int id = 0;
    };
    static std::atomic<int> begun;
    begun = 0;
    const auto ignore = [](int) {};
    const auto work = [](const Job &, int &) {
        ++begun;
        QThread::msleep(200);
    };
    const auto queue = std::make_shared<WorkerQueue<Job, int>>(WorkerThreads::Reports{ignore, ignore}, work,
                                                               [](const Job &, int &) { return true; });
    queue->start();
    {
        const WorkerThreads::Lock lock(*queue);
        for (int i = 0; i < 50; ++i)
            queue->addOrdered({});
        queue->wake();
    }
    for (int i = 0; i < 5000 && begun == 0; ++i)
        QThread::msleep(1);
    const int left = queue->finish(std::chrono::milliseconds(0));
    EXPECT_GT(left, 0);
    EXPECT_EQ(begun + left, 50);
}
