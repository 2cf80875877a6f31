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
using orix_places_protocol::MessageType;
using Rules = SearchRulePrivate;

namespace
{

const Fields NO_MORE = {flag(false), i32(0), i32(-1), i32(-1)};

class InternalPlaceManagerTest : public testing::Test
{
protected:
    void answerFind(const Fields &places) { channel.answer(MessageType::FindPlaces, places + NO_MORE); }

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
