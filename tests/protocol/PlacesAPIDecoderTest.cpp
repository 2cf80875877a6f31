// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIDecoder.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/PlaceHeader.h"
#include "places/SearchHandle.h"
#include "search/SearchHandlePrivate.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <limits>

using namespace orix_places_protocol;
using namespace vela::platform::places;
using namespace wire;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace
{

/// A reply to a request, behind its status.
struct Reply
{
    Reply(MessageType request, const std::string &body)
    {
        const std::string bytes = message({i32(0), i32(static_cast<int>(request) + REPLY_OFFSET)}) + body;
        PlacesAPIDecoder loaded(bytes.data(), static_cast<unsigned>(bytes.size()));
        ReturnCode code = ReturnCode::NoStatus;
        EXPECT_TRUE(loaded.decodeResponse(code));
        decoder = loaded;
    }
    PlacesAPIDecoder decoder;
};

template <typename List>
struct Owned
{
    ~Owned() { qDeleteAll(list); }
    List list;
};

const Fields PAGING = {flag(true), i32(20), i32(3), i32(4), i32(2), i32(5), i32(6), i32(7), i32(8)};

} // namespace

TEST(PlacesAPIDecoder, OfAHeaderGivesTheHeaderWhatItHolds)
{
    Reply reply(MessageType::GetPlace, message(sample::headerFields()));
    PlaceHeader *decoded = nullptr;
    ASSERT_TRUE(reply.decoder.decodePlaceHeader(decoded));
    const std::unique_ptr<PlaceHeader> header(decoded);
    EXPECT_TRUE(reply.decoder.testBuffer());
    EXPECT_EQ(header->id(), 42);
    EXPECT_EQ(header->name(), QStringLiteral("Café"));
    EXPECT_EQ(header->owner(), QStringLiteral("app"));
    EXPECT_EQ(header->lastUsedTime(), 4000U);
    EXPECT_EQ(header->primaryEmailAddress(), QStringLiteral("a@b.example"));
    EXPECT_EQ(header->primaryPhoneNumber(), QStringLiteral("+41 22"));
    EXPECT_EQ(header->primaryUrl(), QUrl(QStringLiteral("https://cafe.example/")));
    EXPECT_EQ(header->primaryLocation(), QStringLiteral("Café au lac"));
    EXPECT_EQ(header->primaryCoordinates(), Coordinates(46.2, 6.15));
    EXPECT_EQ(header->securityPerimeter(), vela::system::SecurityPerimeter::Work);
    EXPECT_TRUE(header->isFavorite());
    const PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(header.get());
    EXPECT_EQ(data.searchTerm(), QStringLiteral("cafe"));
    EXPECT_EQ(data.externalId(), QStringLiteral("x:1"));
    EXPECT_EQ(data.auxiliaryDataType(), QStringLiteral("poi"));
    EXPECT_EQ(data.dataMask(), sample::MASK);
}

TEST(PlacesAPIDecoder, OfTheOtherFormGivesWhatTheRecordHolds)
{
    Reply full(MessageType::GetPlace, message(sample::placeFields()));
    PlaceHeader *header = nullptr;
    ASSERT_TRUE(full.decoder.decodePlaceHeader(header));
    const std::unique_ptr<PlaceHeader> ownedHeader(header);
    EXPECT_EQ(PlaceHeaderPrivate::privateFromPublic(header)->dataMask(), sample::MASK);
    EXPECT_EQ(header->primaryPhoneNumber(), QStringLiteral("+41 22"));
    EXPECT_EQ(header->primaryCoordinates(), Coordinates(46.2, 6.15));

    Reply brief(MessageType::GetPlace, message(sample::headerFields()));
    Place *place = nullptr;
    ASSERT_TRUE(brief.decoder.decodePlace(place));
    const std::unique_ptr<Place> ownedPlace(place);
    EXPECT_EQ(place->usageCount(), 3);
    EXPECT_EQ(place->locationCount(), 1);
    EXPECT_EQ(PlacePrivate::privateFromPublic(place)->locations().first().zoom(), 12);
    EXPECT_EQ(place->auxiliaryData(0).type(), AuxiliaryData::TypePointOfInterest);
    EXPECT_EQ(place->auxiliaryData(0).externalId(), QStringLiteral("x:1"));
    EXPECT_EQ(place->primaryEmailAddress(), QStringLiteral("a@b.example"));
    EXPECT_EQ(place->primaryPhoneNumber(), QStringLiteral("+41 22"));
    EXPECT_EQ(place->primaryUrl(), QUrl(QStringLiteral("https://cafe.example/")));
}

TEST(PlacesAPIDecoder, GivesEachRecordAProviderOfItsOwn)
{
    const auto records = [](const char *first, const char *second) {
        const auto record = [](const char *provider) {
            return Fields{i64(1), text(""), text("poi"), flag(true)} + sample::providerFields(provider)
                   + Fields{i32(0)};
        };
        QList<AuxiliaryData> data;
        EXPECT_TRUE(Reply(MessageType::GetAuxiliaryData, message(Fields{i32(2)} + record(first) + record(second)))
                        .decoder.decodeGetAuxiliaryData(data));
        return data;
    };
    const QList<AuxiliaryData> earlier = records("a", "b");
    const QList<AuxiliaryData> later = records("c", "d");
    EXPECT_EQ(earlier[0].provider().name(), QStringLiteral("a"));
    EXPECT_EQ(earlier[1].provider().name(), QStringLiteral("b"));
    EXPECT_EQ(later[0].provider().name(), QStringLiteral("c"));
}

TEST(PlacesAPIDecoder, OfMixedPlacesKeepsTheirOrderAndKind)
{
    Reply reply(MessageType::FindPlaces,
                message(Fields{i32(3)} + sample::headerFields(1) + sample::placeFields(2) + sample::headerFields(3)));
    Owned<QList<AbstractPlace *>> places;
    ASSERT_TRUE(reply.decoder.decodePlaces(places.list));
    ASSERT_EQ(places.list.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(places.list[i]->id(), i + 1);
        EXPECT_EQ(dynamic_cast<Place *>(places.list[i]) != nullptr, i == 1);
    }
}

TEST(PlacesAPIDecoder, OfAnotherTypeIsRefused)
{
    const std::string body = message({i32(0), i32(0), i32(0), i32(0), i32(0)});
    long long id = -7;
    bool flag = true;
    unsigned size = 7;
    QStringList texts;
    QList<AuxiliaryData> data;
    Owned<QList<PlaceHeader *>> headers;
    EXPECT_FALSE(Reply(MessageType::GetRecentSearchTerms, body).decoder.decodeAddPlaceResponse(id));
    EXPECT_FALSE(Reply(MessageType::FindPlaces, body).decoder.decodeUnfav(flag));
    EXPECT_FALSE(Reply(MessageType::FindPlaces, body).decoder.decodeFindPlacesSize(size));
    EXPECT_FALSE(Reply(MessageType::GetTags, body).decoder.decodeGetRecentSearchTerms(texts));
    EXPECT_FALSE(Reply(MessageType::GetProviders, body).decoder.decodeGetAuxiliaryData(data));
    EXPECT_FALSE(Reply(MessageType::GetPlace, body).decoder.decodeFindPlaces(headers.list, nullptr));
    EXPECT_EQ(id, -7);
    EXPECT_EQ(size, 7U);
    EXPECT_TRUE(flag);
}

/// Every reply that is cut, or has a wrong byte of fill, or an impossible count, ends in a refusal, in no time.
TEST(PlacesAPIDecoder, ThatIsDamagedIsRefusedAtWhateverByte)
{
    const std::string whole = message(Fields{i32(2)} + sample::headerFields() + sample::placeFields() + PAGING);
    const std::size_t withoutTail = whole.size() - 20;
    const auto refused = [](const std::string &bytes) {
        Reply reply(MessageType::FindPlaces, bytes);
        Owned<QList<AbstractPlace *>> places;
        return !reply.decoder.decodeFindPlaces(places.list, nullptr) && places.list.isEmpty();
    };
    ASSERT_FALSE(refused(whole));
    for (std::size_t cut = 0; cut < whole.size(); ++cut)
        EXPECT_EQ(refused(whole.substr(0, cut)), cut < withoutTail || cut >= withoutTail + 4) << cut;

    int fills = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string damaged = whole;
        damaged[i] = 'Y';
        if (whole[i] != 'Z')
            continue;
        EXPECT_TRUE(refused(damaged)) << i;
        ++fills;
    }
    EXPECT_GT(fills, 40);

    for (std::size_t word = 0; word + 4 <= whole.size(); word += 4) {
        for (const int number : {0x7fffffff, std::numeric_limits<int>::min(), -1}) {
            std::string damaged = whole;
            std::memcpy(&damaged[word], &number, sizeof number);
            refused(damaged);
        }
    }
}

TEST(PlacesAPIDecoder, WithANegativeOrImpossibleCountIsRefused)
{
    for (const int count : {-1, 2, 0x7fffffff, std::numeric_limits<int>::min()}) {
        QStringList tags = {QStringLiteral("before")};
        EXPECT_FALSE(
            Reply(MessageType::GetTags, message({i32(count), text("one")})).decoder.decodeGetTagsResponse(tags))
            << count;
        EXPECT_THAT(tags, IsEmpty());
    }
    QStringList tags;
    EXPECT_TRUE(Reply(MessageType::GetTags, message({i32(0)})).decoder.decodeGetTagsResponse(tags));
}

TEST(PlacesAPIDecoder, IsRecordedAtItsPositions)
{
    SearchHandle handle;
    SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    ASSERT_TRUE(Reply(MessageType::FindPlaces, message(PAGING)).decoder.decodeSearchHandle(&handle));
    EXPECT_TRUE(handle.hasMoreData());
    EXPECT_EQ(state.providerPrimaryIndex(), 3);
    EXPECT_EQ(state.providerSecondaryIndex(), 4);
    EXPECT_THAT(state.indices(), ElementsAre(Pair(5, 6), Pair(7, 8)));
    EXPECT_TRUE(Reply(MessageType::FindPlaces, message(PAGING)).decoder.decodeSearchHandle(nullptr))
        << "read, and stored nowhere";
}

TEST(PlacesAPIDecoder, MayEndBeforeItsMappingsButNotWithinThem)
{
    const std::string whole = message(PAGING);
    const std::size_t withoutTail = 16;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SearchHandle handle;
        const bool accepted =
            Reply(MessageType::FindPlaces, whole.substr(0, length)).decoder.decodeSearchHandle(&handle);
        const bool isWhole = (length >= withoutTail && length < withoutTail + 4) || length == whole.size();
        EXPECT_EQ(accepted, isWhole) << length;
        EXPECT_EQ(handle.hasMoreData(), isWhole) << length;
    }
    for (const int count : {-1, 3, 0x20000000, 0x7fffffff}) {
        const Fields fields = {flag(true), i32(0), i32(0), i32(0), i32(count), i32(1), i32(2), i32(3), i32(4)};
        EXPECT_FALSE(Reply(MessageType::FindPlaces, message(fields)).decoder.decodeSearchHandle(nullptr)) << count;
    }
}

TEST(PlacesAPIDecoder, SurvivesABaseIndexThatMakesNoSense)
{
    for (const int base : {-5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        SearchHandle handle;
        const Fields fields = {flag(false), i32(base), i32(0), i32(0), i32(2), i32(1), i32(2), i32(3), i32(4)};
        EXPECT_TRUE(Reply(MessageType::FindPlaces, message(fields)).decoder.decodeSearchHandle(&handle));
        EXPECT_THAT(SearchHandlePrivate::privateFromPublic(&handle)->indices(), ElementsAre(Pair(1, 2), Pair(3, 4)));
    }
}
