// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/InternalPlaceManager.h"
#include "places/Place.h"
#include "places/PlaceHeader.h"
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
using testing::IsEmpty;
using Rules = SearchRulePrivate;

namespace
{

const Fields NO_MORE = {flag(false), i32(0), i32(-1), i32(-1)};

class InternalPlaceManagerTest : public testing::Test
{
protected:
    void answerFind(const Fields &places) { channel.answer(13, places + NO_MORE); }

    FakeSystem system;
    FakeChannel channel;
    InternalPlaceManager manager;
    Error::Type error = Error::Unspecified;
    SearchHandle handle;
    const SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    const QString term = QStringLiteral("é");
    const SortRule byName = SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    const SortRule byUse = SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
};

} // namespace

TEST_F(InternalPlaceManagerTest, EveryFindSendsItsRuleAndSetsWhereTheNextPageStarts)
{
    const Coordinates centre(1, 2);
    const SearchRule named = SearchRule::createNameRule(SearchOperator::StartsWith, term);
    const SearchRule adjusted = ruleOf(disjoint(Rules::createNameRule(SearchOperator::StartsWith, term)));
    const auto release = [](const auto &found) {
        const int count = found.size();
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

TEST_F(InternalPlaceManagerTest, AMixedFindGivesFullPlacesAndHeadersAsTheyCome)
{
    answerFind(Fields{i32(2)} + sample::headerFields(1) + sample::placeFields(2));
    const auto found = manager.findMixedPlaces(SearchRule(), &error);
    ASSERT_EQ(found.size(), 2);
    EXPECT_TRUE(found[0].dynamicCast<PlaceHeader>());
    EXPECT_TRUE(found[1].dynamicCast<Place>());
}

TEST_F(InternalPlaceManagerTest, FullPlacesGoOnBehindThoseThatCame)
{
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

TEST_F(InternalPlaceManagerTest, FavouritesAreLeftOutOfAGroupOnDemand)
{
    answerFind({i32(0)});
    EXPECT_THAT(manager.findNonFavoritePlacesByGroup(SearchResultGroup::Contacts, &error, &handle, term, 1, 2),
                IsEmpty());
    const SearchRule others = ruleOf(
        disjoint(std::make_unique<AndRule>(Rules::createContactQueryRule(term), Rules::createExcludeFavoritesRule())));
    EXPECT_EQ(channel.body(), findBody(others, SortRule(), 1, 2));
    answerFind({i32(0)});
    EXPECT_THAT(manager.findPlacesByGroup(SearchResultGroup::Contacts, &error, &handle, term, 1, 2), IsEmpty());
    EXPECT_EQ(channel.body(), findBody(ruleOf(disjoint(Rules::createContactQueryRule(term))), SortRule(), 1, 2));

    EXPECT_THAT(manager.findNonFavoritePlacesByGroup(SearchResultGroup::Favorites, &error), IsEmpty());
    EXPECT_EQ(error, Error::InvalidArgument);
    EXPECT_EQ(channel.requestCount(), 2U);
}

TEST_F(InternalPlaceManagerTest, ContactsTermsAndBackupsAreAskedForAsTheyAre)
{
    channel.answer(10, sample::placeFields());
    const std::unique_ptr<Place> place(manager.getPlaceFromContact(1, -2, 3, &error));
    ASSERT_TRUE(place);
    EXPECT_EQ(channel.body(), message({i32(1), i32(-2), i32(3)}));
    channel.refuse(10, 54);
    EXPECT_EQ(manager.getPlaceFromContact(1, 2, 3, &error), nullptr);
    EXPECT_EQ(error, Error::NotFound);

    channel.answer(2, texts({"café", "cave"}));
    EXPECT_EQ(manager.getRecentSearchTerms(&error, QStringLiteral("ca")),
              (QStringList{QStringLiteral("café"), QStringLiteral("cave")}));
    EXPECT_EQ(error, Error::Success);
    EXPECT_EQ(channel.body(), message({text("ca")}));

    channel.refuse(15, 68);
    EXPECT_EQ(manager.backup(QStringLiteral("/tmp/é")), Error::BackupFailed);
    EXPECT_EQ(channel.body(), message({text("/tmp/é")}));
    channel.answer(16);
    EXPECT_EQ(manager.restore(QStringLiteral("/tmp/é")), Error::Success);
    EXPECT_EQ(channel.type(), 16);
}
