// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceStorageManager.h"
#include "places/PlaceHeader.h"
#include "search/ManagerTest.h"
#include "search/WorkerQueue.h"

#include <QtCore/QThread>

#include <atomic>
#include <cstring>
#include <stdexcept>
#include <thread>

using namespace vela::platform::places;
using namespace wire;
using Type = orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

Type typeOf(const std::string &request)
{
    int type = 0;
    std::memcpy(&type, request.data(), sizeof type);
    return static_cast<Type>(type);
}

/// Answers as a service does that stores one place, number 42.
std::string answer(const std::string &request)
{
    const Type type = typeOf(request);
    switch (type) {
    case Type::AddPlace:
        return FakeChannel::reply(type, {i64(42)});
    case Type::GetPlace:
        return FakeChannel::reply(type, sample::placeFields());
    case Type::Unfav:
        return FakeChannel::reply(type, {flag(true)});
    case Type::GetPlaceFromSuggestion:
        return FakeChannel::reply(type, sample::placeFields(-1));
    case Type::GetHeaderFromFullPlace:
        return FakeChannel::reply(type, sample::headerFields());
    default:
        return FakeChannel::reply(type, {});
    }
}

class PlaceStorageManagerTest : public ManagerTest<PlaceStorageManager, &PlaceStorageManager::finished>
{
protected:
    PlaceStorageManagerTest() { channel.answerWith(answer); }

    PlaceStorageReply reply(int index) { return signals[index][0].value<PlaceStorageReply>(); }
    /// The requests so far: "get" for GetPlace, and for AddTag its tag of a single letter.
    std::vector<std::string> requests()
    {
        std::vector<std::string> texts;
        for (const std::string &request : channel.requests())
            texts.push_back(typeOf(request) == Type::GetPlace ? "get" : request.substr(24));
        return texts;
    }
    void addTags(const char *tags, const QVariant &tag = QVariant())
    {
        for (const char *each = tags; *each != '\0'; ++each)
            manager->addTag(42, QString(QLatin1Char(*each)), tag);
    }
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
        AbstractPlacePrivate::privateFromPublic(&header)->setSearchTerm(QStringLiteral("zür"));
        header.setProperty("searchLatitude", 47.5);
        return (manager.get()->*call)(header, QVariant());
    };
    using Manager = PlaceStorageManager;
    const auto anyPlace = [](int (Manager::*call)(const AbstractPlace &, const QVariant &)) { return call; };
    using Types = std::vector<Type>;
    const Types adds = {Type::AddPlace, Type::GetHeaderFromFullPlace, Type::GetPlace};
    const Types resolves = {Type::GetPlaceFromSuggestion};
    const Types resolvesAndAdds = {Type::GetPlaceFromSuggestion, Type::AddPlace, Type::GetHeaderFromFullPlace,
                                   Type::GetPlace};
    const Types fetches = {Type::GetPlace};
    const struct
    {
        const char *name;
        std::function<int()> call;
        Types requests; ///< None for a call with an invalid argument.
        qint64 id;
        bool hasPlace;
    } rows[] = {
        {"add", [&] { return withPlace(-1, &Manager::addPlace); }, adds, 42, true},
        {"add again", [&] { return withPlace(42, &Manager::addPlace); }, {}, 42, false},
        {"update", [&] { return withPlace(42, &Manager::updatePlace); }, {Type::UpdatePlace}, 42, true},
        {"remove", [&] { return manager->removePlace(42); }, {Type::RemovePlace}, 42, false},
        {"use", [&] { return manager->usePlace(42); }, {Type::IncrementUsage}, 42, false},
        {"use found", [&] { return withHeader(42, anyPlace(&Manager::usePlace)); }, {Type::IncrementUsage}, 42, false},
        {"fav stored", [&] { return withPlace(42, &Manager::fav); }, {Type::GetPlace, Type::UpdatePlace}, 42, true},
        {"fav new", [&] { return withPlace(-1, &Manager::fav); }, adds, 42, true},
        {"fav found", [&] { return withHeader(-1, &Manager::fav); }, resolvesAndAdds, 42, true},
        {"unfav", [&] { return withHeader(42, &Manager::unfav); }, {Type::GetPlace, Type::Unfav}, 42, true},
        {"unfav new", [&] { return withPlace(-1, &Manager::unfav); }, {}, -1, false},
        {"untag", [&] { return manager->removeTag(42, QStringLiteral("a")); }, {Type::RemoveTag}, 42, false},
        {"get", [&] { return manager->getPlace(42); }, fetches, 42, true},
        {"get stored", [&] { return withHeader(42, anyPlace(&Manager::getPlace)); }, fetches, 42, true},
        {"get found", [&] { return withHeader(-1, anyPlace(&Manager::getPlace)); }, resolves, -1, true},
    };
    std::string sent;
    for (const auto &row : rows) {
        const std::size_t before = channel.requestCount();
        const int job = row.call();
        ASSERT_TRUE(arrive(1)) << row.name;
        Types types;
        for (std::size_t i = before; i < channel.requestCount(); ++i) {
            types.push_back(typeOf(channel.requests()[i]));
            sent += channel.requests()[i];
        }
        EXPECT_EQ(types, row.requests) << row.name;
        EXPECT_EQ(reply(0).jobId(), job) << row.name;
        EXPECT_EQ(reply(0).status(), row.requests.empty() ? Error::InvalidArgument : Error::Success) << row.name;
        EXPECT_EQ(reply(0).placeId(), row.id) << row.name;
        ASSERT_EQ(!reply(0).place().isNull(), row.hasPlace) << row.name;
        EXPECT_TRUE(!row.hasPlace || reply(0).place()->thread() == manager->thread()) << row.name;
        signals.clear();
    }
    for (const std::string &part : {f64(47.5).bytes, text("z\xFCr").bytes, text("zür").bytes})
        EXPECT_THAT(sent, HasSubstr(part)) << "where the user searched, and for what";
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
        return FakeChannel::reply(Type::GetPlace, ReturnCode::StorageFailed, {text("no room")});
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
    const std::size_t before = channel.requestCount();
    const int managers = expectNothingLeftBehind([](PlaceStorageManager &saving) {
        const sample::FullPlace place;
        saving.updatePlace(place);
        saving.getPlace(place);
        saving.fav(place);
    });
    EXPECT_GE(channel.requestCount(), before + std::size_t{3} * static_cast<std::size_t>(managers));
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
