// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/ClientProtocol.h"
#include "protocol/PIMSession.h"
#include "protocol/Protocol.h"
#include "support/Encoded.h"
#include "support/FakeChannel.h"
#include "support/FakeSystem.h"

#include <gmock/gmock.h>

#include <cerrno>

using namespace orix_places_protocol;
using namespace vela::platform::places;
using namespace wire;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

class TransportTest : public testing::Test
{
protected:
    ReturnCode send(int capacity = 300)
    {
        PlacesAPIEncoder request;
        request.encodeGetTags();
        return ClientProtocol().sendMessage(request, reply, capacity);
    }

    FakeChannel channel;
    PlacesAPIDecoder reply;
};

/// The key that a request carries when the session object says this and the clock stands there.
std::string keyAt(long now, const char *session)
{
    FakeSystem::now = now;
    FakeSystem::session = session;
    return PIMSession::getSessionKey();
}

/// Far enough from one another that the key is always read anew.
long nextEpoch()
{
    static long epoch = 1000000;
    return epoch += 10000;
}

} // namespace

TEST_F(TransportTest, ARefusedOpenHasACodeOfItsOwnAndSendsNothing)
{
    const struct
    {
        int error;
        ReturnCode code;
        Error::Type mapped;
    } cases[] = {{ENOENT, ReturnCode::NoService, Error::ServiceUnavailable},
                 {EACCES, ReturnCode::NotPermitted, Error::PermissionDenied},
                 {EMFILE, ReturnCode::TransportFailed, Error::CommunicationFailed}};
    for (const auto &row : cases) {
        channel.refuseOpen(row.error);
        EXPECT_EQ(send(), row.code);
        EXPECT_EQ(Protocol::mapReturnCode(send(), nullptr), row.mapped);
    }
    EXPECT_THAT(channel.requests(), IsEmpty());
}

TEST_F(TransportTest, AReplyThatFillsTheBufferIsTakenAtOnceAndALongerOneFetched)
{
    const Fields body = {text(std::string(400, 'x'))};
    const int size = 8 + 4 + 400;
    channel.answer(MessageType::GetTags, body);
    EXPECT_EQ(send(size), ReturnCode::Success);
    EXPECT_EQ(channel.pendingFetches(), 0);

    for (const int capacity : {size - 1, 100, 0}) {
        std::string text;
        channel.answer(MessageType::GetTags, body);
        EXPECT_EQ(send(capacity), ReturnCode::Success) << capacity;
        EXPECT_TRUE(reply.decodeString(text));
        EXPECT_EQ(text.size(), 400U);
    }
    EXPECT_EQ(channel.pendingFetches(), 3);
}

TEST_F(TransportTest, WhatIsNoReplyIsAFailure)
{
    for (const int length : {0x7fffffff, 64 * 1024 * 1024 + 1, 5000}) {
        channel.claimLength(length);
        channel.answer(MessageType::GetTags);
        EXPECT_EQ(send(), ReturnCode::TransportFailed) << length;
    }
    EXPECT_EQ(channel.pendingFetches(), 1) << "no memory is taken for what is beyond the bound";
    channel.claimLength(-1);
    for (std::size_t cut = 0; cut < 8; ++cut) {
        channel.answerBytes(FakeChannel::reply(MessageType::GetTags).substr(0, cut));
        EXPECT_EQ(send(), ReturnCode::TransportFailed) << cut;
    }
    channel.breakExchange(5);
    EXPECT_EQ(send(), ReturnCode::TransportFailed);
    EXPECT_EQ(channel.openHandles(), 0);
}

TEST_F(TransportTest, AnOverridingNameIsOpenedInTheServicesStead)
{
    ClientProtocol::OVERIDED_CSM_NAME = "places.test";
    channel.answer(MessageType::GetTags);
    send();
    ClientProtocol::OVERIDED_CSM_NAME.clear();
    EXPECT_EQ(channel.openedNames().back(), "places.test");
    channel.answer(MessageType::GetTags);
    send();
    EXPECT_THAT(channel.openedNames().back(), testing::StartsWith("places"));
    EXPECT_NE(channel.openedNames().back(), "places.test");
}

TEST_F(TransportTest, WithoutTheInternalChannelTheExternalOneIsUsedFromThenOn)
{
    channel.refuseOpen(EACCES);
    send();
    if (channel.openedNames().size() < 2)
        GTEST_SKIP() << "another test has chosen the channel already; ctest gives each a process of its own";
    send();
    EXPECT_THAT(channel.openedNames(), ElementsAre("places", "places.external", "places.external"));
}

TEST(PIMSession, TheKeyIsReadAtMostEveryFiveMinutesThoughItFails)
{
    const FakeSystem system;
    const long start = nextEpoch();
    EXPECT_EQ(keyAt(start, "dat\njson:{\"session\":\"first\"}\n"), "first");
    EXPECT_EQ(FakeSystem::sessionRequest, std::string("msg::session_request\nid::1234", 30));
    EXPECT_EQ(keyAt(start + 300, "json:{\"session\":\"second\"}"), "first");
    EXPECT_EQ(FakeSystem::sessionReads, 1);
    EXPECT_EQ(keyAt(start + 301, "json:{\"session\":\"second\"}"), "second");
    EXPECT_EQ(keyAt(start - 5, nullptr), "") << "the clock was set back";
    EXPECT_EQ(keyAt(start + 295, "json:{\"session\":\"there\"}"), "");
    EXPECT_EQ(keyAt(start + 296, "json:{\"session\":\"there\"}"), "there");
}

TEST(PIMSession, WhatIsNoSessionGivesAnEmptyKey)
{
    const std::string longest = "json:{\"session\":\"" + std::string(400, 'k') + "\"}";
    const std::string tooLong = "json:{\"session\":\"" + std::string(600, 'k') + "\"}";
    const struct
    {
        const char *session;
        int interruptions;
        std::size_t acceptedBytes;
        std::size_t length; ///< Of the key.
    } cases[] = {
        {longest.c_str(), 3, 30, 400},
        {longest.c_str(), 0, 29, 0},
        {tooLong.c_str(), 0, 30, 0},
        {"", 0, 30, 0},
        {"json", 0, 30, 0},
        {"json:", 0, 30, 0},
        {"json:[]", 0, 30, 0},
        {"json:{}", 0, 30, 0},
        {"json:{\"session\":7}", 0, 30, 0},
        {"json:{\"session\":\"k", 0, 30, 0},
        {"{\"session\":\"no marker\"}", 0, 30, 0},
    };
    for (const auto &row : cases) {
        const FakeSystem system;
        FakeSystem::interruptions = row.interruptions;
        FakeSystem::acceptedBytes = row.acceptedBytes;
        EXPECT_EQ(keyAt(nextEpoch(), row.session).size(), row.length) << row.session;
        EXPECT_EQ(FakeSystem::sessionReads != 0, row.acceptedBytes == 30) << row.session;
    }
}

TEST(PIMSession, EveryRequestCarriesTheKeyAndThePerimeter)
{
    FakeSystem system;
    FakeSystem::now = nextEpoch();
    FakeSystem::session = "json:{\"session\":\"key42\"}";
    const auto encode = [](auto &r) {
        return r.encodeHeader(MessageType::AddPlace, vela::system::SecurityPerimeter::Work);
    };
    EXPECT_EQ(encoded(encode), message({i32(1), i32(2), text("key42")}));
    FakeSystem::session = nullptr;
    FakeSystem::now += 301;
    EXPECT_EQ(PIMSession::getSessionKey(), "");
}
