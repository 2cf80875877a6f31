// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchManager.h"
#include "places/AbstractPlace.h"
#include "places/SortRule.h"
#include "support/EventLoop.h"
#include "support/FakeChannel.h"
#include "support/FakeSystem.h"
#include "support/FindRequest.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>

#include <new>
#include <stdexcept>
#include <thread>

using namespace vela::platform::places;
using namespace wire;
using orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using Group = SearchResultGroup;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace
{

const QString FIRST = QStringLiteral("first");
const QString SECOND = QStringLiteral("second");
const QList<Group::Type> FOUR = {Group::Favorites, Group::Contacts, Group::Addresses, Group::Remote};

/// Finds place 1 for the first term and place 2 for any other.
std::string found(const std::string &request)
{
    const qint64 id = request.find("first") != std::string::npos ? 1 : 2;
    return FakeChannel::reply(MessageType::FindPlaces,
                              Fields{i32(1)} + sample::headerFields(id) + Fields{flag(true), i32(0), i32(-1), i32(-1)});
}

class SearchManagerTest : public testing::Test
{
protected:
    SearchManagerTest() { channel.answerWith(found); }

    /// Makes a manager and writes down every event of it: what happened, to which search, the groups and places.
    void record()
    {
        manager = std::make_unique<SearchManager>();
        QObject::connect(manager.get(), &SearchManager::started, [this](int id) { note("started", id); });
        QObject::connect(manager.get(), &SearchManager::cancelled, [this](int id) { note("cancelled", id); });
        QObject::connect(manager.get(), &SearchManager::resultAvailable,
                         [this](Error::Type error, const SearchResult &result, bool last, int id) {
                             errors.push_back(error);
                             groups.push_back(result.source());
                             places += result.result();
                             if (!result.reason().isEmpty())
                                 reasons += result.reason();
                             note(last ? "last" : "result", id);
                         });
    }
    void note(const std::string &what, int id)
    {
        events.push_back(what + " " + std::to_string(id));
        if (react)
            react(events.back());
    }
    bool ends(int id)
    {
        return EventLoop::runUntil([&] { return !events.empty() && events.back() == "last " + std::to_string(id); });
    }

    EventLoop loop;
    FakeSystem system;
    FakeChannel channel;
    std::unique_ptr<SearchManager> manager;
    std::vector<std::string> events;
    std::vector<int> errors;
    QStringList reasons;
    std::vector<int> groups;
    QList<QSharedPointer<AbstractPlace>> places;
    std::function<void(const std::string &event)> react;
};

} // namespace

TEST_F(SearchManagerTest, EveryGroupIsReportedOnceAndOnlyTheLastResultSaysSo)
{
    record();
    manager->search(FIRST, Coordinates(), 7, FOUR);
    ASSERT_TRUE(ends(7));
    EXPECT_THAT(events, ElementsAre("started 7", "result 7", "result 7", "result 7", "last 7"));
    EXPECT_THAT(groups, UnorderedElementsAre(4, 6, 9, 16));
    EXPECT_THAT(errors, Each(Error::Success));
    ASSERT_EQ(places.size(), 4);
    EXPECT_EQ(places[0]->id(), 1);
    EXPECT_EQ(places[0]->thread(), manager->thread()) << "a place of a worker could not take part in events";
}

TEST_F(SearchManagerTest, NothingOfAReplacedSearchIsReported)
{
    // Of the four groups of the first search two are answered but have not arrived, and two are being answered.
    record();
    channel.holdAfter(2);
    manager->search(FIRST, Coordinates(), 1, FOUR);
    ASSERT_TRUE(channel.waitForRequests(4));
    manager->search(SECOND, Coordinates(), 2, FOUR);
    channel.release();
    ASSERT_TRUE(ends(2));
    EventLoop::runOut();
    EXPECT_THAT(events, ElementsAre("started 1", "started 2", "result 2", "result 2", "result 2", "last 2"));
    for (const auto &place : places)
        EXPECT_EQ(place->id(), 2);

    // The same with the same number, as of an application that counts nothing.
    events.clear();
    places.clear();
    const std::size_t before = channel.requestCount();
    manager->search(FIRST, Coordinates(), 2, FOUR);
    ASSERT_TRUE(channel.waitForRequests(before + 4));
    manager->search(SECOND, Coordinates(), 2, {Group::Favorites});
    ASSERT_TRUE(ends(2));
    EventLoop::runOut();
    EXPECT_THAT(events, ElementsAre("started 2", "started 2", "last 2"));
    EXPECT_EQ(places[0]->id(), 2);
}

TEST_F(SearchManagerTest, ABurstOfSearchesCostsAtMostTwoRequestsMoreThanItsLast)
{
    record();
    channel.holdAfter(0);
    for (int i = 0; i < 50; ++i)
        manager->search(FIRST, Coordinates(), i, FOUR);
    ASSERT_TRUE(channel.waitForRequests(2));
    channel.release();
    ASSERT_TRUE(ends(49));
    EXPECT_LE(channel.requestCount(), 2U + 4U);
}

TEST_F(SearchManagerTest, SuggestionsAreHeldBackUntilNobodyTypesAndAreTenAtMost)
{
    record();
    QElapsedTimer sinceLastSearch;
    std::size_t sent = 0;
    for (const char *term : {"a", "ab", "abc"}) {
        manager->search(QLatin1String(term), Coordinates(1, 2), 1, {}, 5, 100);
        sinceLastSearch.start();
        EXPECT_TRUE(channel.waitForRequests(++sent)) << "the local group waits for nothing";
        QThread::msleep(60);
    }
    ASSERT_TRUE(ends(1));
    EXPECT_GE(sinceLastSearch.elapsed(), 150);
    EXPECT_EQ(channel.requestCount(), 4U);
    const auto suggestions = find::disjoint(SearchRulePrivate::createSuggestionRule(QStringLiteral("abc")));
    EXPECT_EQ(channel.body(), find::findBody(find::ruleOf(SearchRulePrivate::Node(suggestions->clone())), SortRule(), 5,
                                             10, Coordinates(1, 2)));
    EXPECT_EQ(groups.back(), Group::Suggestions);
}

TEST_F(SearchManagerTest, FavouritesAreLeftOutOnDemandAndFailuresAreReportedByGroup)
{
    record();
    manager->searchNonFavorite(FIRST, Coordinates(), 1, {Group::Favorites});
    ASSERT_TRUE(ends(1));
    EXPECT_THAT(channel.requests(), testing::IsEmpty());
    manager->searchNonFavorite(FIRST, Coordinates(), 2, {Group::Contacts});
    ASSERT_TRUE(ends(2));
    EXPECT_EQ(places.size(), 1);

    const std::function<std::string(const std::string &)> failures[] = {
        [](const std::string &) {
            return FakeChannel::reply(MessageType::FindPlaces, ReturnCode::ProviderFailed, {text("no guide")});
        },
        [](const std::string &) { return std::string("garbage"); },
        [](const std::string &) -> std::string { throw std::bad_alloc(); },
        [](const std::string &) -> std::string { throw std::runtime_error("anything"); },
    };
    for (const auto &failure : failures) {
        events.clear();
        channel.answerWith(failure);
        manager->search(FIRST, Coordinates(), 3, {Group::Contacts, Group::Remote});
        ASSERT_TRUE(ends(3));
        EXPECT_THAT(events, ElementsAre("started 3", "result 3", "last 3"));
    }
    EXPECT_EQ(places.size(), 1);
    EXPECT_THAT(errors,
                ElementsAre(Error::InvalidArgument, Error::Success, Error::ProviderFailed, Error::ProviderFailed,
                            Error::CommunicationFailed, Error::CommunicationFailed, Error::CommunicationFailed,
                            Error::CommunicationFailed, Error::Unspecified, Error::Unspecified));
    EXPECT_EQ(reasons, QStringList({QStringLiteral("no guide"), QStringLiteral("no guide")}));
}

TEST_F(SearchManagerTest, ASlotMaySearchAgain)
{
    record();
    react = [this](const std::string &event) {
        if (event == "started 1" || event == "result 2")
            manager->search(SECOND, Coordinates(), event == "started 1" ? 2 : 3, {Group::Contacts, Group::Remote});
    };
    manager->search(FIRST, Coordinates(), 1, FOUR);
    ASSERT_TRUE(ends(3));
    EventLoop::runOut();
    EXPECT_THAT(events, ElementsAre("started 1", "started 2", "result 2", "started 3", "result 3", "last 3"));
}

TEST_F(SearchManagerTest, AManagerMayBeDestroyedByASlotOfAnyOfItsSignals)
{
    const std::string cancelled = "cancelled 2";
    for (const std::string last : {"started 2", "result 2", "last 2"}) {
        events.clear();
        record();
        react = [&](const std::string &event) {
            if (event != last)
                return;
            channel.release(); // what is held comes to its end only now, and needs the manager's lock for it
            manager.reset();
        };
        const std::size_t before = channel.requestCount();
        channel.holdAfter(0);
        manager->search(FIRST, Coordinates(), 1, FOUR);
        ASSERT_TRUE(channel.waitForRequests(before + 2));
        if (last != "started 2")
            channel.release();
        manager->search(SECOND, Coordinates(), 2, FOUR);
        ASSERT_TRUE(EventLoop::runUntil([&] { return !manager; })) << last;
        EXPECT_EQ(channel.openHandles(), 0);
        // With one answer here, the others may be on their way, and then nothing is cancelled.
        EXPECT_THAT(events.back(), AnyOf(last == "started 2" ? cancelled : last, last == "last 2" ? last : cancelled));
    }
}

TEST_F(SearchManagerTest, DestroyingWaitsForTheWorkersAndCancelsWhatIsOutstanding)
{
    record();
    channel.holdAfter(2);
    manager->search(FIRST, Coordinates(), 5, FOUR);
    ASSERT_TRUE(channel.waitForRequests(4));
    std::atomic<bool> released = false;
    std::thread service([&] {
        QThread::msleep(50);
        released = true;
        channel.release();
    });
    manager.reset();
    EXPECT_TRUE(released);
    EXPECT_EQ(channel.openHandles(), 0);
    service.join();
    EventLoop::runOut();
    EXPECT_THAT(events, ElementsAre("started 5", "cancelled 5"));

#if QT_VERSION_MAJOR < 6
    events.clear();
    record();
    manager->search(FIRST, Coordinates(), 6, {Group::Favorites});
    ASSERT_TRUE(channel.waitForRequests(5));
    EXPECT_TRUE(EventLoop::awaitEvent());
    manager.reset();
    EXPECT_THAT(events, ElementsAre("started 6")) << "answered, though not reported: nothing is left to cancel";
#endif
}

TEST_F(SearchManagerTest, ThreadsThatTheSystemRefusesAreLivedWithout)
{
    for (const int threads : {1, 2}) {
        FakeSystem::refusedThreads = threads;
        record();
        manager->search(FIRST, Coordinates(), threads, FOUR);
        EXPECT_TRUE(threads == 2 || ends(1));
        manager.reset();
    }
    EXPECT_EQ(events.back(), "cancelled 2");
}

TEST_F(SearchManagerTest, ManagersThatAreDestroyedWhileSearchingLeaveNothingBehind)
{
    const int threads = EventLoop::threads() + 1; // a sanitizer may start one of its own
    for (int i = 0; i < EventLoop::managers(); ++i) {
        record();
        const std::size_t before = channel.requestCount();
        manager->search(FIRST, Coordinates(), 1);
        manager->search(SECOND, Coordinates(), 2, FOUR);
        ASSERT_TRUE(i % 3 != 1 || channel.waitForRequests(before + 3));
        if (i % 3 == 2)
            QCoreApplication::processEvents();
        manager.reset();
        ASSERT_THAT(events.back(), testing::EndsWith(" 2"));
    }
    EXPECT_EQ(channel.openHandles(), 0);
    EXPECT_TRUE(EventLoop::runUntil([&] { return EventLoop::threads() <= threads; }));
}
