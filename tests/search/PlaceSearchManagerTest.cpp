// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceSearchManager.h"
#include "places/Place.h"
#include "search/ManagerTest.h"
#include "search/PlaceSearchManagerPrivate.h"

#include <stdexcept>

using namespace vela::platform::places;
using namespace wire;
using orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using testing::IsEmpty;

namespace
{

AuxiliaryDataRequest request(int value)
{
    AuxiliaryDataRequest request;
    request.setPlace(QSharedPointer<AbstractPlace>(new Place));
    request.setUserDefinedValue(value);
    return request;
}

AuxiliaryDataReply replyOf(const QVariantList &signal)
{
    return signal[0].value<QList<AuxiliaryDataReply>>().first();
}

class PlaceSearchManagerTest : public ManagerTest<PlaceSearchManager, &PlaceSearchManager::auxiliaryDataAvailable>
{
protected:
    PlaceSearchManagerTest()
    {
        PlaceSearchManagerPrivate::providersRetrieved = false;
        PlaceSearchManagerPrivate::providers.clear();
        channel.answerWith([](const std::string &) {
            return FakeChannel::reply(MessageType::GetAuxiliaryData, sample::auxiliaryFields());
        });
    }
};

} // namespace

TEST_F(PlaceSearchManagerTest, EveryRequestIsAnsweredAndTheLastOfATagSaysSo)
{
    const QList<AuxiliaryDataRequest> requests = {request(1), request(2), request(3)};
    EXPECT_EQ(manager->requestAuxiliaryData(requests, QStringLiteral("tag")), Error::Success);
    ASSERT_TRUE(arrive(3));
    QSet<int> values;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(signals[i][1], QVariant(QStringLiteral("tag")));
        EXPECT_EQ(signals[i][2].toBool(), i == 2);
        const AuxiliaryDataReply reply = replyOf(signals[i]);
        EXPECT_EQ(reply.status(), Error::Success);
        EXPECT_EQ(reply.data().size(), 1);
        values.insert(reply.userDefinedValue().toInt());
    }
    EXPECT_EQ(values, (QSet<int>{1, 2, 3}));
}

TEST_F(PlaceSearchManagerTest, OneInvalidRequestRefusesTheListAndAnEmptyListIsNothing)
{
    EXPECT_EQ(manager->requestAuxiliaryData({request(1), AuxiliaryDataRequest(), request(2)}, 1), 2);
    EXPECT_EQ(manager->requestAuxiliaryData({}, 1), 0);
    EventLoop::runOut();
    EXPECT_THAT(channel.requests(), IsEmpty());
    EXPECT_TRUE(signals.isEmpty());
}

TEST_F(PlaceSearchManagerTest, ACancelledTagIsNeverReportedWhereverItsRequestsAre)
{
    // Of the tag to be cancelled one reply has not arrived, one is being fetched and one waits.
    channel.holdAfter(1);
    EXPECT_EQ(manager->requestAuxiliaryData({request(1), request(2)}, 1), Error::Success);
    EXPECT_EQ(manager->requestAuxiliaryData({request(3)}, 2), Error::Success);
    EXPECT_EQ(manager->requestAuxiliaryData({request(4)}, 1), Error::Success);
    ASSERT_TRUE(channel.waitForRequests(3));
    manager->cancel(1);
    channel.release();
    ASSERT_TRUE(arrive(1));
    EventLoop::runOut();
    ASSERT_EQ(signals.size(), 1);
    EXPECT_EQ(replyOf(signals[0]).userDefinedValue(), QVariant(3));
    EXPECT_TRUE(signals[0][2].toBool());

    EXPECT_EQ(manager->requestAuxiliaryData({request(5)}, 1), Error::Success);
    EXPECT_TRUE(arrive(2)) << "a tag may be used again";
}

TEST_F(PlaceSearchManagerTest, AFailedRequestIsReportedWithItsPlace)
{
    const auto failing = request(1);
    channel.answerWith([](const std::string &) {
        return FakeChannel::reply(MessageType::GetAuxiliaryData, ReturnCode::ProviderFailed, {text("no guide")});
    });
    EXPECT_EQ(manager->requestAuxiliaryData({failing}, 1), Error::Success);
    ASSERT_TRUE(arrive(1));
    EXPECT_EQ(replyOf(signals[0]).status(), Error::ProviderFailed);
    EXPECT_EQ(replyOf(signals[0]).reason(), QStringLiteral("no guide"));
    channel.answerWith([](const std::string &) -> std::string { throw std::runtime_error("anything"); });
    EXPECT_EQ(manager->requestAuxiliaryData({failing}, 1), Error::Success);
    ASSERT_TRUE(arrive(2));
    EXPECT_EQ(replyOf(signals[1]).status(), Error::Unspecified);
    EXPECT_EQ(replyOf(signals[1]).place(), failing.place());
    EXPECT_EQ(replyOf(signals[1]).userDefinedValue(), QVariant(1));
}

TEST_F(PlaceSearchManagerTest, AManagerMayBeDestroyedByASlotAndWhileItFetches)
{
    QObject::connect(manager.get(), &PlaceSearchManager::auxiliaryDataAvailable, [this] { manager.reset(); });
    EXPECT_EQ(manager->requestAuxiliaryData({request(1), request(2), request(3)}, 1), Error::Success);
    ASSERT_TRUE(EventLoop::runUntil([this] { return !manager; }));
    expectNothingLeftBehind([](PlaceSearchManager &fetching) {
        EXPECT_EQ(fetching.requestAuxiliaryData({request(1), request(2), request(3)}, 1), Error::Success);
    });
    EXPECT_EQ(signals.size(), 1);
}

TEST_F(PlaceSearchManagerTest, ProvidersAreAskedForOnceAndFoundByTheExactType)
{
    channel.answerWith([](const std::string &) {
        return FakeChannel::reply(MessageType::GetProviders,
                                  Fields{i32(2)} + sample::providerFields("a") + sample::providerFields("b"));
    });
    const QList<Provider> providers = PlaceSearchManager::getSupportedProviders();
    ASSERT_EQ(providers.size(), 2);
    EXPECT_EQ(providers[0].name(), QStringLiteral("a"));
    EXPECT_EQ(providers[1].name(), QStringLiteral("b"));
    EXPECT_EQ(PlaceSearchManager::findProviders(QStringLiteral("poi")).size(), 2);
    EXPECT_THAT(PlaceSearchManager::findProviders(QStringLiteral("POI")), IsEmpty());
    EXPECT_EQ(channel.requestCount(), 1U);
}

TEST_F(PlaceSearchManagerTest, ProvidersThatCouldNotBeAskedForAreNotAskedForAgain)
{
    channel.answerWith(
        [](const std::string &) { return FakeChannel::reply(MessageType::GetProviders, ReturnCode::Busy, {}); });
    EXPECT_THAT(PlaceSearchManager::getSupportedProviders(), IsEmpty());
    EXPECT_THAT(PlaceSearchManager::findProviders(QStringLiteral("poi")), IsEmpty());
    EXPECT_EQ(channel.requestCount(), 1U);
}
