// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIEncoder.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/AuxiliaryDataRequest.h"
#include "places/PlaceHeader.h"
#include "places/Utilities.h"
#include "search/SearchRulePrivate.h"
#include "search/SortRulePrivate.h"
#include "support/Encoded.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

using namespace orix_places_protocol;
using namespace vela::platform::places;
using namespace wire;

namespace
{

Fields head(int type, int perimeter = 0)
{
    return {i32(type), i32(perimeter), text("")};
}

Fields element(int kind, int field, int op, const std::string &value = "", int number = 0)
{
    return {i32(kind), i32(field), i32(op), text(value), text(""), i32(number)};
}

Fields leaf(int kind, int field, int op, const std::string &value = "", int number = 0)
{
    return element(kind, field, op, value, number) + Fields{i32(0)};
}

const Fields NOWHERE =
    coordinate(sample::NOT_SET, sample::NOT_SET, sample::NOT_SET, sample::NO_ACCURACY, sample::NO_ACCURACY);

std::string serialized(const Place &place)
{
    char *bytes = nullptr;
    int size = 0;
    EXPECT_TRUE(Utilities::serialize(bytes, size, place));
    const std::unique_ptr<char[]> owned(bytes);
    return std::string(bytes, static_cast<std::size_t>(size));
}

std::unique_ptr<Place> deserialized(const char *bytes, int size)
{
    Place *place = nullptr;
    const bool isRead = Utilities::deserialize(place, bytes, size);
    EXPECT_EQ(isRead, place != nullptr);
    return std::unique_ptr<Place>(place);
}

} // namespace

TEST(PlacesAPIEncoder, IsTheHeadAndTheFieldsOfItsOperation)
{
    sample::FullPlace place;
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setData(place.data());
    const Coordinates centre(1, 2);
    const Fields point = coordinate(sample::NOT_SET, 1, 2, sample::NO_ACCURACY, sample::NO_ACCURACY);

    const struct
    {
        const char *name;
        std::function<bool(PlacesAPIEncoder &)> encode;
        Fields expected;
    } cases[] = {
        {"add", [&](auto &r) { return r.encodeAddPlace(place); }, head(1, 2) + sample::placeFields()},
        {"recent terms", [](auto &r) { return r.encodeGetRecentSearchTerms("ca"); }, head(2) + Fields{text("ca")}},
        {"remove", [&](auto &r) { return r.encodeRemovePlace(header); }, head(4, 2) + Fields{i64(42)}},
        {"remove by id", [](auto &r) { return r.encodeRemovePlace(42); }, head(4) + Fields{i64(42)}},
        {"update", [&](auto &r) { return r.encodeUpdatePlace(place); }, head(5, 2) + sample::placeFields()},
        {"use", [](auto &r) { return r.encodeIncUsage(42, "é"); }, head(6) + Fields{i64(42), text("é")}},
        {"tag", [](auto &r) { return r.encodeAddTag(42, "t"); }, head(7) + Fields{i64(42), text("t")}},
        {"untag", [](auto &r) { return r.encodeRemoveTag(42, "t"); }, head(8) + Fields{i64(42), text("t")}},
        {"tags", [](auto &r) { return r.encodeGetTags(); }, head(9)},
        {"contact", [](auto &r) { return r.encodeGetPlaceFromContact(1, 2, 3); },
         head(10) + Fields{i32(1), i32(2), i32(3)}},
        {"clear recent", [](auto &r) { return r.encodeRemoveRecentlyPickedPlaces(); }, head(11)},
        {"get by id", [](auto &r) { return r.encodeGetPlace(42); },
         head(12) + Fields{i64(42), text(""), text(""), text("")}},
        {"unfav", [](auto &r) { return r.encodeUnfav(42); }, head(14) + Fields{i64(42)}},
        {"backup", [](auto &r) { return r.encodeBackup("/b"); }, head(15) + Fields{text("/b")}},
        {"restore", [](auto &r) { return r.encodeRestore("/b"); }, head(16) + Fields{text("/b")}},
        {"suggestion", [&](auto &r) { return r.encodeGetPlaceFromSuggestion("s", centre); },
         head(18) + Fields{text("s")} + point},
        {"providers", [](auto &r) { return r.encodeGetProviders(); }, head(19)},
        {"header", [&](auto &r) { return r.encodeGetHeaderFromFullPlace(place); }, head(20, 2) + sample::placeFields()},
    };
    for (const auto &row : cases)
        EXPECT_EQ(encoded(row.encode), message(row.expected)) << row.name;
}

TEST(PlacesAPIEncoder, ForAHeadersPlaceSendsItsSearchTermOnce)
{
    sample::FullPlace place;
    place.data().setSearchTerm(QStringLiteral("café"));
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setData(place.data());
    const auto encode = [&](auto &request) { return request.encodeGetPlace(header); };
    EXPECT_EQ(encoded(encode), message(head(12, 2) + Fields{i64(42), text("x:1"), text("poi"), text("caf\xE9")}));
    EXPECT_EQ(encoded(encode), message(head(12, 2) + Fields{i64(42), text("x:1"), text("poi"), text("")}));
}

TEST(PlacesAPIEncoder, CountsTheLocationsThatItLeavesOut)
{
    sample::FullPlace place;
    place.addLocation(Location());
    Location virtualOnly;
    virtualOnly.setVirtualData(QStringLiteral("bridge"));
    place.addLocation(virtualOnly);
    const std::string bytes = encoded([&](auto &request) { return request.encodePlaceLocations(place); });
    const std::string first = message(Fields{i32(3)} + sample::locationFields());
    EXPECT_EQ(bytes.substr(0, first.size()), first);
    EXPECT_EQ(bytes.substr(first.size(), 12), message({i64(-1), i32(-1)})) << "the virtual one comes next";
}

TEST(PlacesAPIEncoder, ForAuxiliaryDataIdentifiesThePlaceTheSameWayEveryTime)
{
    const QSharedPointer<Place> place(new sample::FullPlace(-1));
    AuxiliaryData other(AuxiliaryData::TypeContact);
    other.setExternalId(QStringLiteral("y:2"));
    AuxiliaryDataPrivate::fromPublic(other)->setProvider(sample::provider(QStringLiteral("atlas")));
    place->addAuxiliaryData(other);
    place->addTag(QStringLiteral("lbs-restaurant"));
    AuxiliaryDataRequest request;
    request.setPlace(place);
    request.setDataType(QStringLiteral("poi"));
    request.setRemoteDataOnly(true);
    request.setProvider(sample::provider());
    request.setOffset(5);
    request.setLimit(6);

    const Fields id = Fields{i64(-1), text("Café"), text("Café au lac"), text("+41 22")}
                      + coordinate(sample::NOT_SET, 46.2, 6.15, 12.5F, sample::NO_ACCURACY) + texts({"poi", "contact"})
                      + Fields{flag(false), flag(true), i32(2)} + sample::providerFields("atlas") + Fields{text("y:2")}
                      + sample::providerFields() + Fields{text("x:1")};
    EXPECT_EQ(
        encoded([&](auto &r) { return r.encodeGetAuxiliaryData(request); }),
        message(head(3, 2) + id + Fields{text("poi"), flag(true)} + sample::providerFields() + Fields{i32(5), i32(6)}));
    PlacesAPIEncoder encoder;
    EXPECT_FALSE(encoder.encodeGetAuxiliaryData(AuxiliaryDataRequest())) << "without a place there is nothing to ask";
}

TEST(PlacesAPIEncoder, WritesCountBeforeOffsetAndTheRulesBetween)
{
    const SearchRule rule = SearchRule::createAndRule(
        SearchRule::createNameRule(SearchOperator::Contains, QStringLiteral("é")),
        SearchRule::createOrRule(SearchRule::createRecentlyPickedRule(),
                                 SearchRule::createLastUsedTimeRule(SearchOperator::GreaterOrEqual, 0xFFFFFFFFU)));
    const Fields rules = element(2, 0, 1) + Fields{i32(2)} + leaf(13, 4, 7, "é") + element(4, 0, 1) + Fields{i32(2)}
                         + leaf(3, 8, 1) + leaf(11, 3, 4, "", -1);
    EXPECT_EQ(encoded([&](auto &r) { return r.encodeFindPlaces(rule, SortRule(), 20, 10, true, Coordinates(), 3, 4); }),
              message(head(13) + Fields{i32(10), i32(20)} + NOWHERE + Fields{flag(true)} + rules
                      + Fields{i32(2), i32(2), i32(0), i32(0), i32(3), i32(4)}));
    EXPECT_EQ(encoded([&](auto &r) { return r.encodeFindPlacesSize(SearchRule(), Coordinates()); }),
              message(head(17) + Fields{i32(0), i32(0)} + NOWHERE + Fields{flag(false)} + leaf(1, 0, 1)
                      + Fields{i32(2), i32(2), i32(0), i32(0), i32(-1), i32(-1)}));
}

TEST(PlacesAPIEncoder, WritesEveryKindOfRule)
{
    DisjointRule disjoint(SearchRulePrivate::createListFavoriteRule());
    AndRule withNull;
    withNull.addRule(nullptr);
    CombinedSortRule combined;
    combined.addRule(new SimpleSortRule(SortField::Name, SortOrder::Ascending));
    combined.addRule(new DistanceSortRule(Coordinates(1, 2), SortOrder::Descending));
    combined.addRule(nullptr);
    EXPECT_EQ(encoded([&](auto &r) { return r.encodeSearchRule(&disjoint); }),
              message(element(5, 0, 1) + Fields{i32(1)} + leaf(3, 19, 1)));
    EXPECT_EQ(encoded([&](auto &r) { return r.encodeSearchRule(&withNull); }),
              message(element(2, 0, 1) + Fields{i32(1)} + leaf(1, 0, 1)));
    EXPECT_EQ(encoded([&](auto &r) { return r.encodeSortRule(&combined); }),
              message(Fields{i32(3), i32(1), i32(0), i32(3), i32(2), i32(1), i32(1), i32(0), i32(4), i32(2), i32(0)}
                      + coordinate(sample::NOT_SET, 1, 2, sample::NO_ACCURACY, sample::NO_ACCURACY)
                      + Fields{i32(1), i32(1), i32(0), i32(0)}));
}

TEST(PlacesAPIEncoder, WritesEveryRuleUnderItsNumber)
{
    using R = SearchRulePrivate;
    constexpr auto AtLeast = SearchOperator::GreaterOrEqual;
    const QString t = QStringLiteral("t");
    const Fields both = element(2, 0, 1) + Fields{i32(2)};
    const Fields named = leaf(13, 4, 7, "t");
    const std::pair<R::Node, Fields> cases[] = {
        {R::createAuxiliaryKeyRule(AtLeast, t), leaf(13, 1, 4, "t")},
        {R::createAuxiliaryValueRule(AtLeast, t), leaf(13, 2, 4, "t")},
        {R::createLastUsedTimeRule(AtLeast, 9), leaf(11, 3, 4, "", 9)},
        {R::createNameRule(AtLeast, t), leaf(13, 4, 4, "t")},
        {R::createOwnerRule(AtLeast, t), leaf(13, 5, 4, "t")},
        {R::createTagRule(AtLeast, t), leaf(13, 6, 4, "t")},
        {R::createTypeRule(AtLeast, t), leaf(13, 7, 4, "t")},
        {R::createRecentlyPickedRule(), leaf(3, 8, 1)},
        {R::createRecentSearchTermsRule(), leaf(3, 10, 1)},
        {R::createMyPlacesRule(t), leaf(13, 11, 2, "t")},
        {R::createExcludeFavoritesRule(), leaf(3, 12, 1)},
        {R::createGeocodeAddressRule(t), leaf(13, 15, 2, "t")},
        {R::createPOINameRule(t), leaf(13, 16, 2, "t")},
        {R::createContactQueryRule(t), leaf(13, 17, 2, "t")},
        {R::createListFavoriteRule(), leaf(3, 19, 1)},
        {R::createSuggestionRule(t), leaf(13, 20, 2, "t")},
        {R::createPOICategoryRule(t), leaf(13, 21, 2, "t")},
        {R::createPOICategorySuggestionRule(t), leaf(13, 22, 2, "t")},
        {R::createMeetingRoomRule(t), leaf(13, 23, 2, "t")},
        {R::createRemotePlacesRule(t, false), leaf(13, 24, 2, "t")},
        {R::createRemotePlacesRule(t, true), leaf(13, 25, 2, "t")},
        {R::createNonContactQueryRule(t), both + named + leaf(3, 18, 1)},
        {R::createQueryRecentlyPickedRule(t), both + leaf(3, 8, 1) + named},
        {R::createQueryRecentlyPickedRule(QString()), leaf(3, 8, 1)},
        {R::createQueryTagRule(AtLeast, QStringLiteral("x"), t), both + leaf(13, 6, 4, "x") + named},
        {R::createQueryTagRule(AtLeast, QStringLiteral("x"), QString()), leaf(13, 6, 4, "x")},
        {R::createAuxiliaryPairRule(QStringLiteral("k"), AtLeast, t), both + leaf(13, 1, 2, "k") + leaf(13, 2, 4, "t")},
    };
    for (const auto &[rule, fields] : cases)
        EXPECT_EQ(encoded([&](auto &r) { return r.encodeSearchRule(rule.get()); }), message(fields));
}

TEST(Utilities, SurvivesTheWayThroughBytesAndAZoomWithIt)
{
    const sample::FullPlace place;
    const std::string bytes = serialized(place);
    const std::unique_ptr<Place> copy = deserialized(bytes.data(), static_cast<int>(bytes.size()));
    ASSERT_TRUE(copy);
    EXPECT_EQ(encoded([&](auto &r) { return r.encodePlace(*copy); }), message(sample::placeFields()));
    for (int cut = -1; cut < static_cast<int>(bytes.size()); ++cut)
        EXPECT_FALSE(deserialized(bytes.data(), cut)) << cut;
}

TEST(Utilities, SurvivesTheWayThroughBytesWithLocationsThatSayNothing)
{
    Location there;
    there.setCoordinates(Coordinates(1, 2));
    for (const int silent : {1, 2, 16, 17}) {
        for (const bool hasOther : {false, true}) {
            sample::FullPlace place;
            place.removeLocation(0);
            if (hasOther)
                place.addLocation(there);
            for (int i = 0; i < silent; ++i)
                place.addLocation(Location());
            const std::string bytes = serialized(place);
            const std::unique_ptr<Place> copy = deserialized(bytes.data(), static_cast<int>(bytes.size()));
            EXPECT_EQ(copy != nullptr, silent <= 16) << silent << hasOther;
            EXPECT_TRUE(!copy || *PlacePrivate::privateFromPublic(copy.get()) == place.data()) << silent << hasOther;
        }
    }
}
