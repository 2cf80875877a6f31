// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceManager.h"
#include "manager/PlaceManagerPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/InternalPlaceManager.h"
#include "places/PlaceHeader.h"
#include "places/Tags.h"
#include "search/SearchHandlePrivate.h"
#include "support/FakeChannel.h"
#include "support/FakeSystem.h"
#include "support/FindRequest.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

using namespace vela::platform::places;
using namespace wire;
using find::disjoint;
using find::findBody;
using find::ruleOf;
using orix_places_protocol::MessageType;
using orix_places_protocol::ReturnCode;
using testing::IsEmpty;
using Rules = SearchRulePrivate;

namespace
{

const Fields NO_MORE = {flag(true), i32(0), i32(-1), i32(-1)};

Rules::Node withoutFavorites(Rules::Node node)
{
    return std::make_unique<AndRule>(std::move(node), Rules::createExcludeFavoritesRule());
}

SortRule simple(int field, int order)
{
    return SortRule::createSimpleSortRule(static_cast<SortField::Type>(field), static_cast<SortOrder::Type>(order));
}

class PlaceManagerTest : public testing::Test
{
protected:
    PlaceManagerTest() { qputenv("PLACE_CARD_INVOKER_DNAME", "app.test"); }
    ~PlaceManagerTest() override { qunsetenv("PLACE_CARD_INVOKER_DNAME"); }

    void answerFind(const Fields &places = {i32(0)}) { channel.answer(MessageType::FindPlaces, places + NO_MORE); }

    FakeSystem system;
    FakeChannel channel;
    PlaceManager manager;
    PlaceManagerPrivate internal;
    Error::Type error = Error::Unspecified;
};

class InternalPlaceManagerTest : public PlaceManagerTest
{
protected:
    InternalPlaceManager manager;
};

} // namespace

// ------------------------------------------------------------------------------------------------- stored places

TEST_F(PlaceManagerTest, ANewPlaceTakesItsOwnerItsNameAndAllThatTheServiceMadeOfIt)
{
    Place place;
    Location location;
    location.setCoordinates(Coordinates(1, 2));
    place.addLocation(location);
    channel.answer(MessageType::AddPlace, {i64(42)});
    channel.answer(MessageType::GetHeaderFromFullPlace, sample::headerFields());
    channel.answer(MessageType::GetPlace, sample::placeFields(42, ""));
    EXPECT_EQ(manager.addPlace(&place), Error::Success);
    EXPECT_EQ(place.id(), 42);
    EXPECT_EQ(place.creationTime(), 1000U);
    EXPECT_EQ(place.name(), QStringLiteral("Café"));
    const std::string start =
        message({i32(1), i32(0), text(""), i64(-1), text("Unnamed Place"), text(""), text("app.test")});
    EXPECT_EQ(channel.requests().front().substr(0, start.size()), start);
}

TEST_F(PlaceManagerTest, APlaceThatIsStoredButCannotBeFetchedIsStored)
{
    sample::FullPlace place(-1);
    channel.answer(MessageType::AddPlace, {i64(42)});
    channel.refuse(MessageType::GetHeaderFromFullPlace, ReturnCode::Busy);
    EXPECT_EQ(manager.addPlace(&place), Error::Success);
    EXPECT_EQ(place.id(), 42);
}

TEST_F(PlaceManagerTest, WhatCannotBeDoneIsRefusedAndNothingIsSent)
{
    sample::FullPlace stored;
    sample::FullPlace fresh(-1);
    Place withoutLocation;
    PlaceHeader header;
    const Error::Type refused[] = {
        manager.addPlace(nullptr),
        manager.addPlace(&stored),
        manager.addPlace(&withoutLocation),
        manager.addRecentlyPickedPlace(nullptr),
        manager.updatePlace(nullptr),
        manager.updatePlace(&fresh),
        manager.removePlace(nullptr),
        manager.usePlace(nullptr),
        manager.usePlace(&fresh),
        manager.fav(nullptr),
        manager.unfav(nullptr),
        manager.unfav(&fresh),
        manager.unfav(&header),
    };
    EXPECT_THAT(refused, testing::Each(Error::InvalidArgument));
    EXPECT_EQ(manager.getPlace(static_cast<const PlaceHeader *>(nullptr), &error), nullptr);
    EXPECT_EQ(error, Error::InvalidArgument);
    EXPECT_THAT(manager.findEquivalentPlaces(nullptr, &error), IsEmpty());
    EXPECT_EQ(error, Error::InvalidArgument);
    EXPECT_THAT(channel.requests(), IsEmpty());
    EXPECT_EQ(fresh.owner(), QStringLiteral("app"));
}

TEST_F(PlaceManagerTest, EveryWayOfStoringSetsItsOwnPersistenceMask)
{
    const auto maskSent = [this](const std::function<Error::Type(Place &)> &store, qint64 id, bool favorite) {
        sample::FullPlace place(id);
        if (!favorite)
            place.removeTag(Tags::Favorite);
        channel.refuse(MessageType::AddPlace, ReturnCode::StorageFailed);
        EXPECT_EQ(store(place), Error::StorageFailed);
        return place.data().persistenceMask();
    };
    EXPECT_EQ(maskSent([this](Place &place) { return manager.addPlace(&place); }, -1, true), 3);
    EXPECT_EQ(maskSent([this](Place &place) { return manager.updatePlace(&place); }, 42, true), 2);
    EXPECT_EQ(maskSent([this](Place &place) { return manager.addRecentlyPickedPlace(&place); }, -1, true), 3);
    EXPECT_EQ(maskSent([this](Place &place) { return manager.addRecentlyPickedPlace(&place); }, -1, false), 1);
    EXPECT_EQ(maskSent([this](Place &place) { return manager.fav(&place); }, 42, false), 3);
}

TEST_F(PlaceManagerTest, ASearchTermIsHandedOnWithTheNextUseAndDroppedByAnUpdate)
{
    sample::FullPlace place;
    channel.answer(MessageType::IncrementUsage);
    EXPECT_EQ(manager.usePlace(&place), Error::Success);
    EXPECT_EQ(channel.body(), message({i64(42), text("cafe")}));
    channel.answer(MessageType::IncrementUsage);
    EXPECT_EQ(manager.usePlace(&place), Error::Success);
    EXPECT_EQ(channel.body(), message({i64(42), text("")}));

    place.data().setSearchTerm(QStringLiteral("again"));
    channel.answer(MessageType::UpdatePlace);
    EXPECT_EQ(manager.updatePlace(&place), Error::Success);
    EXPECT_THAT(channel.body(), testing::Not(testing::HasSubstr("again")));
    EXPECT_TRUE(place.data().searchTerm().isEmpty());
}

TEST_F(PlaceManagerTest, ARemovedPlaceCanBeAddedAgain)
{
    sample::FullPlace place;
    channel.refuse(MessageType::RemovePlace, ReturnCode::NoSuchPlace);
    EXPECT_EQ(manager.removePlace(&place), Error::NotFound);
    EXPECT_TRUE(place.isPersisted());
    channel.answer(MessageType::RemovePlace);
    EXPECT_EQ(manager.removePlace(static_cast<const AbstractPlace *>(&place)), Error::Success);
    EXPECT_EQ(channel.perimeter(), 2);
    EXPECT_FALSE(place.isPersisted());
    EXPECT_EQ(place.usageCount(), 0);
    EXPECT_EQ(place.auxiliaryData(0).id(), -1);
}

TEST_F(PlaceManagerTest, AFetchedPlaceKeepsTheCertaintyOfItsHeader)
{
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setCertainty(SearchResultCertainty::Guess);
    channel.answer(MessageType::GetPlace, sample::placeFields());
    const std::unique_ptr<Place> place(manager.getPlace(&header, &error));
    ASSERT_TRUE(place);
    EXPECT_EQ(place->certainty(), SearchResultCertainty::Guess);
    channel.answerBytes(FakeChannel::reply(MessageType::GetPlace));
    EXPECT_EQ(manager.getPlace(7, &error), nullptr);
    EXPECT_EQ(error, Error::CommunicationFailed);
}

TEST_F(PlaceManagerTest, AnUnsavedPlaceIsFetchedAsASuggestion)
{
    PlaceHeader header;
    PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(&header);
    data.setName(QStringLiteral("Café"));
    header.setProperty("searchLatitude", 46.5);
    header.setProperty("searchLongitude", QStringLiteral("6.5"));
    channel.refuse(MessageType::GetPlaceFromSuggestion, ReturnCode::ProviderFailed);
    EXPECT_EQ(internal.getPlace(static_cast<const AbstractPlace *>(&header), &error), nullptr);
    EXPECT_EQ(error, Error::ProviderFailed);
    const Fields centre = coordinate(sample::NOT_SET, 46.5, 6.5, sample::NO_ACCURACY, sample::NO_ACCURACY);
    EXPECT_EQ(channel.body(), message(Fields{text("Café")} + centre));

    data.m_externalId = QStringLiteral("guide:77");
    EXPECT_EQ(internal.getPlace(static_cast<const AbstractPlace *>(&header), &error), nullptr);
    EXPECT_EQ(channel.body(), message(Fields{text("guide:77")} + centre));

    Place place;
    place.setName(QStringLiteral("Full"));
    AuxiliaryData record(AuxiliaryData::TypePointOfInterest);
    record.addProperty(QStringLiteral("searchLatitude"), QStringLiteral("46.5"));
    record.addProperty(QStringLiteral("searchLongitude"), QStringLiteral("6.5"));
    place.addAuxiliaryData(record);
    EXPECT_EQ(internal.getPlace(static_cast<const AbstractPlace *>(&place), &error), nullptr);
    EXPECT_EQ(channel.body(), message(Fields{text("Full")} + centre));
}

// ---------------------------------------------------------------------------------------------------- favourites

TEST_F(PlaceManagerTest, AFavouriteIsStoredWhateverItWas)
{
    sample::FullPlace fresh(-1);
    fresh.removeTag(Tags::Favorite);
    channel.answer(MessageType::AddPlace, {i64(42)});
    channel.answer(MessageType::GetHeaderFromFullPlace, sample::headerFields());
    channel.answer(MessageType::GetPlace, sample::placeFields());
    EXPECT_EQ(manager.fav(&fresh), Error::Success);
    EXPECT_EQ(fresh.id(), 42);
    EXPECT_TRUE(fresh.isFavorite());

    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setId(42);
    channel.answer(MessageType::GetPlace, sample::placeFields());
    channel.answer(MessageType::UpdatePlace);
    EXPECT_EQ(manager.fav(&header), Error::Success);
    EXPECT_EQ(channel.type(), MessageType::UpdatePlace);
    EXPECT_TRUE(header.isFavorite());
    EXPECT_TRUE(header.hasTag());
}

TEST_F(PlaceManagerTest, AFavouriteThatCannotBeStoredIsNone)
{
    sample::FullPlace place;
    place.removeTag(Tags::Favorite);
    channel.refuse(MessageType::UpdatePlace, ReturnCode::NotPermitted);
    EXPECT_EQ(manager.fav(&place), Error::PermissionDenied);
    EXPECT_FALSE(place.isFavorite());
    EXPECT_EQ(place.data().searchTerm(), QStringLiteral("cafe"));
    sample::FullPlace nameless(-1);
    nameless.setName(QString());
    channel.refuse(MessageType::AddPlace, ReturnCode::NotPermitted);
    EXPECT_EQ(manager.fav(&nameless), Error::PermissionDenied);
    EXPECT_EQ(nameless.name(), QString());
    EXPECT_EQ(nameless.owner(), QStringLiteral("app"));
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setId(7);
    channel.refuse(MessageType::GetPlace, ReturnCode::NoSuchPlace);
    EXPECT_EQ(manager.fav(&header), Error::NotFound);
    EXPECT_FALSE(header.isFavorite());
}

TEST_F(PlaceManagerTest, UnfavKeepsTheIdOnlyOfAPlaceThatStaysStored)
{
    const struct
    {
        bool stays;
        qint64 id;
    } cases[] = {{true, 42}, {false, -1}};
    for (const auto &row : cases) {
        sample::FullPlace place;
        channel.answer(MessageType::Unfav, {flag(row.stays)});
        EXPECT_EQ(manager.unfav(&place), Error::Success);
        EXPECT_FALSE(place.isFavorite());
        EXPECT_EQ(place.id(), row.id);

        PlaceHeader header;
        PlaceHeaderPrivate::privateFromPublic(&header)->setData(place.data());
        PlaceHeaderPrivate::privateFromPublic(&header)->setId(42);
        PlaceHeaderPrivate::privateFromPublic(&header)->setTagBit(Tags::Favorite, true);
        channel.answer(MessageType::Unfav, {flag(row.stays)});
        EXPECT_EQ(manager.unfav(&header), Error::Success);
        EXPECT_FALSE(header.isFavorite());
        EXPECT_EQ(header.id(), row.id);
    }
    sample::FullPlace place;
    channel.refuse(MessageType::Unfav, ReturnCode::StorageFailed);
    EXPECT_EQ(manager.unfav(&place), Error::StorageFailed);
    EXPECT_TRUE(place.isFavorite());
}

// --------------------------------------------------------------------------------------------------------- finds

TEST_F(PlaceManagerTest, EveryFindSendsItsRule)
{
    using R = Rules;
    const QString term = QStringLiteral("é");
    const Coordinates centre(1, 2);
    const auto contains = [&] { return disjoint(R::createNameRule(SearchOperator::Contains, term)); };
    const auto contact = [&] { return disjoint(R::createContactQueryRule(term)); };
    const auto tag = [](const char *name) { return R::createTagRule(SearchOperator::Equals, QLatin1String(name)); };
    const auto mine = [] { return R::createMyPlacesRule(QStringLiteral("app.test")); };
    const auto used = [] { return R::createLastUsedTimeRule(SearchOperator::GreaterOrEqual, 99); };
    auto remote = std::make_unique<OrRule>(contains(), contact());
    remote->append(disjoint(R::createPOINameRule(term)));
    const SortRule byName = simple(1, 1);
    const SortRule byUse = simple(2, 2);

    const struct
    {
        const char *name;
        std::function<QList<PlaceHeader *>()> find;
        std::string body;
    } cases[] = {
        {"by name", [&] { return manager.findPlaces(term, &error, nullptr, byName, 5, 6); },
         findBody(ruleOf(std::make_unique<OrRule>(contains(), contact())), byName, 5, 6)},
        {"remote without a centre", [&] { return manager.findPlaces(term, &error, nullptr, byName, 5, 6, true); },
         findBody(ruleOf(std::make_unique<OrRule>(contains(), contact())), byName, 5, 6)},
        {"remote", [&] { return manager.findPlaces(term, &error, nullptr, byName, 5, 6, true, centre); },
         findBody(ruleOf(std::move(remote)), byName, 5, 6, centre)},
        {"mine", [&] { return manager.findMyPlaces(&error, nullptr, byName, 5, 6); },
         findBody(ruleOf(disjoint(mine())), byName, 5, 6)},
        {"recent", [&] { return manager.findRecentPlaces(&error, nullptr, false, 0, 5, 6); },
         findBody(ruleOf(disjoint(std::make_unique<R>())), byUse, 5, 6)},
        {"recent since", [&] { return manager.findRecentPlaces(&error, nullptr, false, 99, 5, 6); },
         findBody(ruleOf(disjoint(used())), byUse, 5, 6)},
        {"recent of mine", [&] { return manager.findRecentPlaces(&error, nullptr, true, 0, 5, 6); },
         findBody(ruleOf(disjoint(mine())), byUse, 5, 6)},
        {"recent of mine since", [&] { return manager.findRecentPlaces(&error, nullptr, true, 99, 5, 6); },
         findBody(ruleOf(disjoint(std::make_unique<AndRule>(mine(), used()))), byUse, 5, 6)},
        {"two tags",
         [&] {
             return manager.findPlacesByTags({QStringLiteral("a"), QStringLiteral("b")}, &error, nullptr, byName, 5, 6);
         },
         findBody(ruleOf(disjoint(std::make_unique<OrRule>(tag("a"), tag("b")))), byName, 5, 6)},
        {"no tag", [&] { return manager.findPlacesByTags({}, &error, nullptr, byName, 5, 6); },
         findBody(ruleOf(std::make_unique<OrRule>()), byName, 5, 6)},
        {"owner", [&] { return manager.findPlacesByOwners({QStringLiteral("o")}, &error, nullptr, byName, 5, 6); },
         findBody(ruleOf(disjoint(R::createOwnerRule(SearchOperator::Equals, QStringLiteral("o")))), byName, 5, 6)},
        {"type", [&] { return manager.findPlacesByTypes({QStringLiteral("poi")}, &error, nullptr, byName, 5, 6); },
         findBody(ruleOf(disjoint(R::createTypeRule(SearchOperator::Equals, QStringLiteral("poi")))), byName, 5, 6)},
    };
    for (const auto &row : cases) {
        answerFind();
        row.find();
        EXPECT_EQ(error, Error::Success) << row.name;
        EXPECT_EQ(channel.body(), row.body) << row.name;
    }
}

TEST_F(PlaceManagerTest, EveryGroupSendsItsRule)
{
    using R = Rules;
    const QString term = QStringLiteral("é");
    const auto picked = [&] { return R::createQueryRecentlyPickedRule(term); };
    const auto terms = [] { return disjoint(R::createRecentSearchTermsRule()); };
    const auto contact = [&] { return R::createContactQueryRule(term); };
    const auto others = [&] { return R::createNonContactQueryRule(term); };
    const auto favorites = [&] { return R::createQueryTagRule(SearchOperator::Equals, Tags::Favorite, term); };
    auto local = std::make_unique<AndRule>(disjoint(R::createMeetingRoomRule(term)), disjoint(others()));
    local->append(disjoint(contact()));

    const SearchRule remoteByName = ruleOf(disjoint(R::createRemotePlacesRule(term, false)));
    const SearchRule remote = ruleOf(disjoint(R::createRemotePlacesRule(term, true)));
    const SearchRule address = ruleOf(disjoint(R::createGeocodeAddressRule(term)));
    const SearchRule poi = ruleOf(disjoint(R::createPOINameRule(term)));
    const SearchRule suggestion = ruleOf(disjoint(R::createSuggestionRule(term)));
    const SearchRule category = ruleOf(disjoint(R::createPOICategoryRule(term)));
    const SearchRule categorySuggestion = ruleOf(disjoint(R::createPOICategorySuggestionRule(term)));
    const SearchRule nonContacts = ruleOf(disjoint(others()));
    const SortRule byUse = simple(2, 2);
    const SortRule byName = simple(1, 1);
    const SortRule unchanged;

    const struct
    {
        int group;
        bool excludeFavorites;
        SearchRule rule;
        SortRule sort;
    } cases[] = {
        {2, false, ruleOf(std::make_unique<AndRule>(disjoint(picked()), terms())), byUse},
        {2, true, ruleOf(std::make_unique<AndRule>(disjoint(withoutFavorites(picked())), terms())), byUse},
        {4, false, ruleOf(disjoint(favorites())), byName},
        {5, false, ruleOf(disjoint(picked())), byUse},
        {5, true, ruleOf(disjoint(withoutFavorites(picked()))), byUse},
        {6, false, ruleOf(disjoint(contact())), unchanged},
        {6, true, ruleOf(disjoint(withoutFavorites(contact()))), unchanged},
        {7, false, ruleOf(std::move(local)), byName},
        {7, true,
         ruleOf(std::make_unique<AndRule>(disjoint(withoutFavorites(others())), disjoint(withoutFavorites(contact())))),
         byName},
        {8, false, remoteByName, unchanged},
        {8, true, remoteByName, unchanged},
        {9, true, address, unchanged},
        {10, true, poi, unchanged},
        {11, true, suggestion, unchanged},
        {12, true, category, unchanged},
        {13, true, categorySuggestion, unchanged},
        {14, true, nonContacts, byName},
        {16, true, remote, unchanged},
    };
    for (const auto &row : cases) {
        answerFind();
        internal.findPlacesByGroup(static_cast<SearchResultGroup::Type>(row.group), &error, nullptr, term, 5, 6,
                                   Coordinates(1, 2), row.excludeFavorites);
        EXPECT_EQ(error, Error::Success) << row.group;
        EXPECT_EQ(channel.body(), findBody(row.rule, row.sort, 5, 6, Coordinates(1, 2)))
            << row.group << row.excludeFavorites;
    }
    answerFind();
    internal.findPlacesByGroup(SearchResultGroup::Favorites, &error, nullptr, QString(), 5, 6, Coordinates(), false);
    EXPECT_EQ(channel.body(), findBody(ruleOf(disjoint(R::createListFavoriteRule())), byName, 5, 6));
}

TEST_F(PlaceManagerTest, AGroupThatCannotBeSearchedIsRefusedAndNothingIsSent)
{
    for (const int group : {-1, 0, 1, 3, 15, 17}) {
        internal.findPlacesByGroup(static_cast<SearchResultGroup::Type>(group), &error, nullptr, QString(), 0, 1,
                                   Coordinates(), false);
        EXPECT_EQ(error, Error::InvalidArgument);
    }
    internal.findPlacesByGroup(SearchResultGroup::Favorites, &error, nullptr, QString(), 0, 1, Coordinates(), true);
    EXPECT_EQ(error, Error::InvalidArgument);
    EXPECT_EQ(internal.findPlacesSizeByGroup(SearchResultGroup::None, &error, QString(), Coordinates()), 0U);
    EXPECT_THAT(channel.requests(), IsEmpty());
}

TEST_F(PlaceManagerTest, AFindNotesWhereTheNextPageStarts)
{
    SearchHandle handle;
    answerFind(Fields{i32(1)} + sample::headerFields());
    const QList<PlaceHeader *> found = manager.findMyPlaces(&error, &handle, simple(1, 1), 20, 10);
    const SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    EXPECT_EQ(found.size(), 1);
    EXPECT_EQ(state.index(), 30);
    EXPECT_TRUE(state.isHeaderOnly());
    EXPECT_TRUE(handle.hasMoreData());
    EXPECT_EQ(state.sortRule(), simple(1, 1));
    EXPECT_EQ(state.searchRule(), ruleOf(disjoint(Rules::createMyPlacesRule(QStringLiteral("app.test")))));
    qDeleteAll(found);

    channel.refuse(MessageType::FindPlaces, ReturnCode::StorageFailed);
    EXPECT_THAT(manager.findMyPlaces(&error, &handle, SortRule(), 70, 10), IsEmpty());
    EXPECT_EQ(error, Error::StorageFailed);
    EXPECT_EQ(state.index(), 30);
}

TEST_F(PlaceManagerTest, EquivalentPlacesHaveTheNameAndStandWithinTheRadius)
{
    const auto candidates = [this](double latitude, const char *name) {
        sample::FullPlace candidate;
        candidate.setName(QString::fromUtf8(name));
        Location location;
        location.setCoordinates(Coordinates(latitude, 6.15));
        candidate.replaceLocation(0, location);
        answerFind(Fields{i32(1), {encoded([&](auto &request) { return request.encodePlaceHeader(candidate); })}});
    };
    const auto found = [this](const Place &place, int radius) {
        const QList<PlaceHeader *> places = manager.findEquivalentPlaces(&place, &error, radius);
        const auto count = places.size();
        qDeleteAll(places);
        return count;
    };
    sample::FullPlace place;
    constexpr double DEGREES_PER_METRE = 1 / 111195.0;
    const struct
    {
        double metres;
        const char *name;
        int radius;
        int kept;
    } cases[] = {{40, "Café", 50, 1}, {60, "Café", 50, 0}, {0, "Café", 0, 1}, {1, "Café", 0, 0}, {0, "Cafe", 50, 0}};
    for (const auto &row : cases) {
        candidates(46.2 + row.metres * DEGREES_PER_METRE, row.name);
        EXPECT_EQ(found(place, row.radius), row.kept) << row.metres << row.name << row.radius;
    }
    const auto sameName = [] { return Rules::createNameRule(SearchOperator::Equals, QStringLiteral("Café")); };
    EXPECT_EQ(channel.body(), findBody(ruleOf(disjoint(sameName())), SortRule(), 0, 100));
    candidates(sample::NOT_SET, "Café");
    EXPECT_EQ(found(place, 50), 0) << "a candidate without a position is nowhere near";

    sample::FullPlace nameless;
    nameless.setName(QString());
    candidates(46.2, "Café au lac");
    EXPECT_EQ(found(nameless, 50), 1) << "a place without a name is looked up by its address";
}

TEST_F(PlaceManagerTest, MorePlacesAreFoundBackwardsWithinWhatIsKnownAndForwardsBehindIt)
{
    SearchHandle handle;
    SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    const auto more = [&](int position) {
        answerFind();
        const std::size_t before = channel.requests().size();
        internal.findMorePlaces(handle, 5, error, position);
        return channel.requests().size() > before;
    };
    EXPECT_FALSE(more(-1)) << "a handle of no find";
    EXPECT_EQ(error, Error::InvalidArgument);
    state.addIndexMapping(0, 1, 2);
    state.addIndexMapping(1, 3, 4);
    for (const int position : {-1, 2, 0, 1}) {
        state.setIndex(30);
        EXPECT_TRUE(more(position)) << position;
        EXPECT_EQ(state.index(), position == 0 || position == 1 ? position : 30);
    }
    EXPECT_FALSE(more(3));
    EXPECT_EQ(error, Error::InvalidArgument);
}

TEST_F(InternalPlaceManagerTest, EveryFindSendsItsRuleAndSetsWhereTheNextPageStarts)
{
    SearchHandle handle;
    const SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    const QString term = QStringLiteral("é");
    const SortRule byName = simple(1, 1);
    const SortRule byUse = simple(2, 2);
    const Coordinates centre(1, 2);
    const SearchRule named = SearchRule::createNameRule(SearchOperator::StartsWith, term);
    const SearchRule adjusted = ruleOf(disjoint(Rules::createNameRule(SearchOperator::StartsWith, term)));
    const auto release = [](const auto &found) {
        const auto count = found.size();
        qDeleteAll(found);
        return count;
    };
    const struct
    {
        const char *name;
        std::function<int()> find;
        std::string body;
        int index;
        bool headerOnly;
    } cases[] = {
        {"mixed", [&] { return manager.findMixedPlaces(named, &error, &handle, byUse, 10, 20, centre).size(); },
         findBody(adjusted, byUse, 10, 20, centre), 30, true},
        {"full", [&] { return release(manager.findPlaces(named, &error, &handle, byUse, 10, 20, centre)); },
         findBody(adjusted, byUse, 10, 20, centre, false), 12, false},
        {"contacts", [&] { return release(manager.findContacts(&error, &handle, term, byName, 1, 5)); },
         findBody(ruleOf(disjoint(Rules::createContactQueryRule(term))), byName, 1, 5), 6, true},
        {"recently picked", [&] { return release(manager.findRecentlyPickedPlaces(&error, &handle, 1, 5)); },
         findBody(ruleOf(disjoint(Rules::createRecentlyPickedRule())), byUse, 1, 5), 6, true},
        {"no contacts", [&] { return release(manager.findNonContactPlaces(term, &error)); },
         findBody(ruleOf(disjoint(Rules::createNonContactQueryRule(term))), byName, 0, 20), 6, true},
    };
    for (const auto &row : cases) {
        answerFind(row.headerOnly ? Fields{i32(2)} + sample::headerFields(1) + sample::headerFields(2)
                                  : Fields{i32(2)} + sample::placeFields(1) + sample::placeFields(2));
        EXPECT_EQ(row.find(), 2) << row.name;
        EXPECT_EQ(error, Error::Success);
        EXPECT_EQ(channel.body(), row.body) << row.name;
        EXPECT_EQ(state.index(), row.index) << row.name;
        EXPECT_EQ(state.isHeaderOnly(), row.headerOnly) << row.name;
    }
}

TEST_F(InternalPlaceManagerTest, FullPlacesGoOnBehindThoseThatCame)
{
    SearchHandle handle;
    answerFind(Fields{i32(1)} + sample::placeFields());
    qDeleteAll(manager.findPlaces(SearchRule(), &error, &handle, SortRule(), 10, 20));
    answerFind(Fields{i32(1)} + sample::placeFields());
    const auto more = manager.findMorePlaces(handle, 5, error);
    ASSERT_EQ(more.size(), 1);
    EXPECT_TRUE(qobject_cast<Place *>(more[0]));
    qDeleteAll(more);
    EXPECT_EQ(channel.body(), findBody(ruleOf(disjoint(std::make_unique<SearchRulePrivate>())), SortRule(), 11, 5,
                                       Coordinates(), false));
}
