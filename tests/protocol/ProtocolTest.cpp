// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/Protocol.h"

#include "places/AuxiliaryDataRequest.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "places/SearchHandle.h"
#include "search/SearchHandlePrivate.h"
#include "support/FakeChannel.h"
#include "support/SamplePlace.h"

#include <QtCore/QMetaEnum>
#include <QtCore/QSet>

#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

using namespace vela::platform::places;
using namespace wire;
using orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;
using testing::Pair;

namespace
{

class ProtocolTest : public testing::Test
{
protected:
    FakeChannel channel;
    Protocol protocol;
    SearchHandle handle;
    SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
};

const Fields NO_MORE = {flag(false), i32(0), i32(-1), i32(-1)};

/// Count, offset and the two provider indexes of a find request.
std::vector<int> pageOf(const std::string &body)
{
    std::vector<int> numbers(4);
    std::memcpy(&numbers[0], body.data(), 8);
    std::memcpy(&numbers[2], body.data() + body.size() - 8, 8);
    return numbers;
}

} // namespace

TEST_F(ProtocolTest, WithoutAServiceNothingIsWritten)
{
    channel.refuseOpen(ENOENT);
    QStringList tags = {QStringLiteral("before")};
    bool stillStored = true;
    Place placeBefore;
    Place *suggestion = &placeBefore;
    Place *contact = &placeBefore;
    Error::Type error = Error::Success;
    EXPECT_EQ(protocol.getTagsInUse(tags, &error), Error::ServiceUnavailable);
    EXPECT_EQ(error, Error::ServiceUnavailable);
    EXPECT_EQ(protocol.unfav(1, stillStored), Error::ServiceUnavailable);
    EXPECT_EQ(protocol.getPlaceFromSuggestion("s", Coordinates(), suggestion), Error::ServiceUnavailable);
    EXPECT_EQ(protocol.getPlaceFromContact(1, 2, 3, contact), Error::ServiceUnavailable);
    EXPECT_EQ(tags, QStringList{QStringLiteral("before")});
    EXPECT_TRUE(stillStored);
    EXPECT_EQ(suggestion, &placeBefore);
    EXPECT_EQ(contact, nullptr) << "this one is cleared before anything else";
}

TEST_F(ProtocolTest, AReplyThatIsCutLeavesWhatTheCallerHas)
{
    QStringList texts = {QStringLiteral("before")};
    QList<Provider> providers = {sample::provider()};
    QList<AuxiliaryData> data = {AuxiliaryData()};
    AuxiliaryDataRequest request;
    request.setPlace(QSharedPointer<AbstractPlace>(new Place));
    const std::pair<MessageType, std::function<Error::Type()>> operations[] = {
        {MessageType::GetRecentSearchTerms, [&] { return protocol.getRecentSearchTerms(texts, QString()); }},
        {MessageType::GetAuxiliaryData, [&] { return protocol.getAuxiliaryData(request, data); }},
        {MessageType::GetTags, [&] { return protocol.getTagsInUse(texts, nullptr); }},
        {MessageType::GetProviders, [&] { return protocol.getSupportedProviders(providers); }},
    };
    for (const auto &[type, operation] : operations) {
        channel.answer(type, {i32(2), text("one")});
        EXPECT_EQ(operation(), Error::CommunicationFailed) << static_cast<int>(type);
    }
    EXPECT_EQ(texts, QStringList{QStringLiteral("before")});
    EXPECT_EQ(providers.size(), 1);
    EXPECT_EQ(data.size(), 1);
}

TEST_F(ProtocolTest, WhatCannotBeWrittenIsNotSent)
{
    namespace reply = orix_places_protocol::reply;
    const auto noMemory = [](auto &) -> bool { throw std::bad_alloc(); };
    QList<AuxiliaryData> data;
    EXPECT_EQ(protocol.exchange(reply::Bare, noMemory), Error::CommunicationFailed);
    EXPECT_EQ(protocol.getAuxiliaryData(AuxiliaryDataRequest(), data), Error::CommunicationFailed);
    EXPECT_TRUE(channel.requests().empty());
}

TEST_F(ProtocolTest, RepliesBecomeResults)
{
    QStringList terms;
    channel.answer(MessageType::GetRecentSearchTerms, texts({"cafe", "café"}));
    EXPECT_EQ(protocol.getRecentSearchTerms(terms, QStringLiteral("ca")), Error::Success);
    EXPECT_EQ(terms, (QStringList{QStringLiteral("cafe"), QStringLiteral("café")}));

    Error::Type error = Error::Unspecified;
    channel.answer(MessageType::FindPlacesSize, {i32(138000)});
    EXPECT_EQ(protocol.findPlacesSize(SearchRule(), &error, Coordinates()), 138000U);
    EXPECT_EQ(error, Error::Success);
}

TEST_F(ProtocolTest, TheNextPageStartsWhereTheLastOneEnded)
{
    state.setIndex(20);
    state.setProviderPrimaryIndex(3);
    state.setProviderSecondaryIndex(4);
    Error::Type error = Error::Unspecified;
    channel.answer(MessageType::FindPlaces,
                   Fields{i32(2)} + sample::headerFields(1) + sample::placeFields(2)
                       + Fields{flag(true), i32(0), i32(5), i32(6), i32(2), i32(1), i32(2), i32(3), i32(4)});
    const QList<AbstractPlace *> found = protocol.findNextPlaces(handle, 10, error);
    EXPECT_EQ(error, Error::Success);
    EXPECT_EQ(found.size(), 2);
    EXPECT_THAT(pageOf(channel.body()), ElementsAre(10, 20, 3, 4));
    EXPECT_EQ(state.index(), 22);
    EXPECT_EQ(state.providerPrimaryIndex(), 5);
    EXPECT_THAT(state.indices(), ElementsAre(Pair(1, 2), Pair(3, 4)));
    qDeleteAll(found);

    channel.answer(MessageType::FindPlaces, Fields{i32(0)} + NO_MORE);
    EXPECT_TRUE(protocol.findNextPlaces(handle, 10, error).isEmpty());
    EXPECT_EQ(state.index(), 22) << "a page without places leads nowhere";
    EXPECT_FALSE(handle.hasMoreData());
}

TEST_F(ProtocolTest, AnEarlierPageIsAskedForWithTheCursorItWasFoundWith)
{
    state.addIndexMapping(0, 10, 11);
    state.addIndexMapping(1, 12, 13);
    Error::Type error = Error::Unspecified;
    for (const auto &[offset, primary, secondary] :
         {std::tuple(1, 12, 13), std::tuple(7, -1, -1), std::tuple(-3, -1, -1)}) {
        channel.answer(MessageType::FindPlaces, Fields{i32(0)} + NO_MORE);
        EXPECT_TRUE(protocol.findPreviousPlaces(handle, offset, 5, error).isEmpty());
        EXPECT_THAT(pageOf(channel.body()), ElementsAre(5, offset, primary, secondary));
        EXPECT_EQ(state.index(), offset);
    }
}

TEST_F(ProtocolTest, APageThatCannotBeReadLeavesTheHandleAlone)
{
    state.setIndex(20);
    const Fields good = Fields{i32(1)} + sample::headerFields();
    Error::Type error = Error::Success;
    channel.answer(MessageType::GetPlace, good + NO_MORE);
    EXPECT_TRUE(protocol.findNextPlaces(handle, 10, error).isEmpty());
    EXPECT_EQ(error, Error::CommunicationFailed) << "a reply of another type";
    channel.answer(MessageType::FindPlaces, good);
    EXPECT_TRUE(protocol.findNextPlaces(handle, 10, error).isEmpty());
    EXPECT_EQ(error, Error::CommunicationFailed) << "places without a paging state";
    channel.refuse(MessageType::FindPlaces, ReturnCode::TookTooLong);
    EXPECT_TRUE(protocol.findNextPlaces(handle, 10, error).isEmpty());
    EXPECT_EQ(error, Error::TimedOut);
    EXPECT_EQ(state.index(), 20);
}

TEST_F(ProtocolTest, TheReasonOfAFailureIsReadFromAnyReply)
{
    const std::string whole(orix_places_protocol::REASON_SIZE, 'x');
    const struct
    {
        const char *name;
        Fields behindStatus;
        QString reason;
    } cases[] = {
        {"an old service", {}, {}},
        {"a reason", {text("Café is full")}, QStringLiteral("Caf\u00e9 is full")},
        {"the longest", {text(whole)}, QString::fromStdString(whole)},
        {"too long a one", {text(whole + "x")}, {}},
        {"an empty one", {text("")}, {}},
        {"more behind it", {text("full"), i32(7)}, QStringLiteral("full")},
        {"half a length", {{"\x01\x02"}}, {}},
        {"longer than the reply", {i32(12), {"cut"}}, {}},
        {"a negative length", {i32(-1), {"none"}}, {}},
        {"no UTF-8", {text("\xFF no")}, QStringLiteral("\uFFFD no")},
        {"what steers a terminal", {text("a\n\x1b[31m\u2028b")}, QStringLiteral("a  [31m b")},
    };
    for (const auto &row : cases) {
        channel.refuse(MessageType::Backup, ReturnCode::BackupFailed, row.behindStatus);
        EXPECT_EQ(protocol.backup("/b"), Error::BackupFailed) << row.name;
        EXPECT_EQ(Error::reason(Error::BackupFailed), row.reason) << row.name;
    }
}

TEST_F(ProtocolTest, AReasonBelongsToTheLastRequestOfItsThread)
{
    channel.refuse(MessageType::Backup, ReturnCode::BackupFailed, {text("mine")});
    EXPECT_EQ(protocol.backup("/b"), Error::BackupFailed);
    std::thread([&] {
        EXPECT_EQ(Error::reason(Error::BackupFailed), QString());
        channel.refuse(MessageType::Backup, ReturnCode::BackupFailed, {text("theirs")});
        EXPECT_EQ(protocol.backup("/b"), Error::BackupFailed);
    }).join();
    EXPECT_EQ(Error::reason(Error::BackupFailed), QStringLiteral("mine"));
    EXPECT_EQ(PlaceManager().removePlace(nullptr), Error::InvalidArgument);
    EXPECT_EQ(Error::reason(Error::InvalidArgument), QString()) << "the service was not asked";
    channel.refuseOpen(ENOENT);
    EXPECT_EQ(protocol.backup("/b"), Error::ServiceUnavailable);
    for (const Error::Type error : {Error::BackupFailed, Error::ServiceUnavailable})
        EXPECT_EQ(Error::reason(error), QString());
}

TEST(Error, HaveATextOfTheirOwn)
{
    const QMetaEnum errors = QMetaEnum::fromType<Error::Type>();
    QSet<QString> texts;
    for (int i = 0; i < errors.keyCount(); ++i)
        texts.insert(errorString(static_cast<Error::Type>(errors.value(i))));
    EXPECT_EQ(texts.size(), errors.keyCount());
    EXPECT_EQ(errorString(Error::NotFound), QStringLiteral("there is no such place"));
    EXPECT_EQ(errorString(static_cast<Error::Type>(99)), errorString(Error::Unspecified));
}
