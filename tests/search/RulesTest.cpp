// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchRule.h"
#include "places/SortRule.h"
#include "search/SearchHandlePrivate.h"
#include "search/SearchRulePrivate.h"
#include "search/SortRulePrivate.h"

#include <gmock/gmock.h>

#include <limits>

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace
{

SearchRule named(const char *name, SearchOperator::Type op = SearchOperator::Equals)
{
    return SearchRule::createNameRule(op, QString::fromUtf8(name));
}

/// The names of a connective's members, in their order.
std::vector<std::string> membersOf(const SearchRule &rule)
{
    std::vector<std::string> names;
    for (const auto *member : dynamic_cast<ConnectiveRule *>(SearchRulePrivate::privateFromPublic(rule))->getRules()) {
        const auto *leaf = dynamic_cast<const UnaryRule<std::string> *>(member);
        names.push_back(leaf ? leaf->getValue() : "(connective)");
    }
    return names;
}

} // namespace

TEST(SearchRule, StaysFlatInChainsOfOneConnective)
{
    const SearchRule ab = SearchRule::createAndRule(named("a"), named("b"));
    EXPECT_THAT(membersOf(SearchRule::createAndRule(ab, named("c"))), ElementsAre("a", "b", "c"));
    EXPECT_THAT(membersOf(SearchRule::createAndRule(named("c"), ab)), ElementsAre("a", "b", "c"));
    EXPECT_THAT(membersOf(SearchRule::createAndRule(ab, ab)), ElementsAre("a", "b", "(connective)"));
    EXPECT_THAT(membersOf(SearchRule::createOrRule(ab, named("c"))), ElementsAre("(connective)", "c"));
    EXPECT_THAT(membersOf(ab), ElementsAre("a", "b")) << "what went in is never changed";
}

TEST(SearchRule, EqualsOneThatIsBuiltAlikeWhateverTheOrder)
{
    const SearchRule ab = SearchRule::createAndRule(named("a"), named("b"));
    const struct
    {
        SearchRule other;
        bool equal;
    } cases[] = {{SearchRule::createAndRule(named("b"), named("a")), true},
                 {SearchRule::createOrRule(named("a"), named("b")), false},
                 {SearchRule::createAndRule(named("a"), named("c")), false},
                 {SearchRule::createAndRule(ab, named("b")), false},
                 {named("a"), false},
                 {SearchRule(), false}};
    for (const auto &row : cases)
        EXPECT_EQ(ab == row.other, row.equal);
    EXPECT_EQ(SearchRule(), SearchRule());
    EXPECT_NE(named("a"), named("a", SearchOperator::Contains));
    EXPECT_NE(named("a"), SearchRule::createOwnerRule(SearchOperator::Equals, QStringLiteral("a")));
    EXPECT_NE(SearchRule::createLastUsedTimeRule(SearchOperator::Equals, 1),
              SearchRule::createLastUsedTimeRule(SearchOperator::Equals, 2));
}

TEST(DisjointRule, SharesItsMemberWithItsClonesAndTakesNoOther)
{
    std::unique_ptr<SearchRulePrivate> clone;
    const SearchRulePrivate *member = nullptr;
    {
        DisjointRule original(SearchRulePrivate::createListFavoriteRule());
        const auto other = SearchRulePrivate::createRecentlyPickedRule();
        static_cast<ConnectiveRule &>(original).addRule(other.get());
        member = original.getRules().front();
        clone.reset(original.clone());
        EXPECT_EQ(original.getRules().size(), 1U);
    }
    EXPECT_THAT(dynamic_cast<ConnectiveRule &>(*clone).getRules(), ElementsAre(member));
    EXPECT_TRUE(*member == *SearchRulePrivate::createListFavoriteRule()) << "it outlives the rule it was made with";
}

TEST(SortRule, EqualsOneOfTheSameMembersAndTheSameCentre)
{
    const Coordinates centre(1, 2);
    EXPECT_EQ(SortRule(), SortRule::createSimpleSortRule(SortField::Relevance, SortOrder::Descending));
    EXPECT_NE(SortRule(), SortRule::createDistanceSortRule(centre, SortOrder::Descending));
    EXPECT_NE(SortRule::createDistanceSortRule(centre, SortOrder::Ascending),
              SortRule::createDistanceSortRule(centre, SortOrder::Descending));
    EXPECT_EQ(SortRule::createDistanceSortRule(centre, SortOrder::Ascending),
              SortRule::createDistanceSortRule(Coordinates(1.0000001, 2), SortOrder::Ascending));
    CombinedSortRule a;
    CombinedSortRule b;
    a.addRule(new SimpleSortRule(SortField::Name, SortOrder::Ascending));
    a.addRule(new SimpleSortRule);
    b.addRule(new SimpleSortRule);
    EXPECT_FALSE(a == b);
    b.addRule(new SimpleSortRule(SortField::Name, SortOrder::Ascending));
    EXPECT_TRUE(a == b);
    const CombinedSortRule nested;
    EXPECT_FALSE(a.addRule(&nested));
    EXPECT_EQ(a.getRules().size(), 2U);
}

TEST(SearchHandle, KeepsTheWayBackToItself)
{
    const auto stateOf = [](SearchHandle &handle) { return SearchHandlePrivate::privateFromPublic(&handle); };
    SearchHandle original;
    stateOf(original)->setIndex(30);
    stateOf(original)->setSearchRule(named("a"));
    stateOf(original)->setMoreData(true);
    stateOf(original)->addIndexMapping(0, 1, 2);
    SearchHandle copy = original;
    SearchHandle target;
    stateOf(target)->addIndexMapping(0, 7, 8);
    target = original;
    SearchHandle moveTarget;
    stateOf(moveTarget)->addIndexMapping(0, 5, 6);
    moveTarget = SearchHandle(original);
    SearchHandle moved = std::move(original);
    swap(moveTarget, moved);
    for (SearchHandle *handle : {&copy, &target, &moveTarget, &moved}) {
        EXPECT_EQ(stateOf(*handle)->index(), 30);
        EXPECT_EQ(stateOf(*handle)->searchRule(), named("a"));
        EXPECT_TRUE(handle->hasMoreData());
    }
    EXPECT_THAT(stateOf(copy)->indices(), IsEmpty());
    EXPECT_THAT(stateOf(target)->indices(), ElementsAre(Pair(7, 8)));
    EXPECT_THAT(stateOf(moveTarget)->indices(), ElementsAre(Pair(5, 6)));
    EXPECT_THAT(stateOf(moved)->indices(), IsEmpty());
    EXPECT_THAT(stateOf(original)->indices(), IsEmpty());
}

TEST(SearchHandle, ReplacesAKnownMappingAndAppendsAnyOther)
{
    SearchHandle handle;
    SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    state.addIndexMapping(0, 1, 1);
    state.addIndexMapping(5, 2, 2);
    state.addIndexMapping(1, 3, 3);
    state.addIndexMapping(-1, 4, 4);
    EXPECT_THAT(state.indices(), ElementsAre(Pair(1, 1), Pair(3, 3), Pair(4, 4)));
    state.setIndexBehind(std::numeric_limits<int>::max(), 10);
    EXPECT_EQ(state.index(), std::numeric_limits<int>::max());
}
