// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceChoice.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/SearchHandle.h>
#include <places/Utilities.h>

#include <QtCore/QSharedPointer>

#include <algorithm>

namespace tool
{

using namespace places;

namespace
{

/// Headers or full places per answer of the service. A page is held in memory.
constexpr int HEADERS = 1000;
constexpr int FULL_PLACES = 200;

using Page = QList<QSharedPointer<AbstractPlace>>;

quint64 changeTimeOf(const AbstractPlace &place)
{
    const auto *full = dynamic_cast<const Place *>(&place);
    return full ? std::max(full->creationTime(), full->updateTime()) : 0;
}

Page fullPlaces(const SearchRule &rule, Error::Type *error, SearchHandle *handle, const SortRule &sort, int offset)
{
    Page page;
    const auto places = InternalPlaceManager().findPlaces(rule, error, handle, sort, offset, FULL_PLACES);
    for (Place *place : places)
        page.append(QSharedPointer<AbstractPlace>(place));
    return page;
}

/// Combines rules with createAndRule(); the empty rule adds nothing.
void restrict(SearchRule &rule, const SearchRule &further)
{
    rule = rule == SearchRule() ? further : SearchRule::createAndRule(rule, further);
}

} // namespace

bool PlaceChoice::hasConditions() const
{
    return !words.isEmpty() || !tags.isEmpty() || owner || needsFilter();
}

bool PlaceChoice::isOfWordsOnly() const
{
    return tags.isEmpty() && !owner && !needsFilter();
}

SearchRule PlaceChoice::rule() const
{
    SearchRule rule;
    if (!words.isEmpty())
        rule = SearchRule::createNameRule(SearchOperator::Contains, words);
    SearchRule anyTag;
    for (const QString &tag : tags) {
        const SearchRule one = SearchRule::createTagRule(SearchOperator::Equals, tag);
        anyTag = anyTag == SearchRule() ? one : SearchRule::createOrRule(anyTag, one);
    }
    if (!tags.isEmpty())
        restrict(rule, anyTag);
    if (owner)
        restrict(rule, SearchRule::createOwnerRule(SearchOperator::Equals, *owner));
    return rule;
}

/// Without a centre or time the order is the last use: only a use of a place changes it, and new places come in the
/// order of adding. So pages neither overlap nor leave gaps.
SortRule PlaceChoice::sort() const
{
    if (centre.isValid())
        return SortRule::createDistanceSortRule(centre, SortOrder::Ascending);
    if (box)
        return SortRule::createDistanceSortRule(box->centre(), SortOrder::Ascending);
    if (since > 0)
        return SortRule::createSimpleSortRule(SortField::UpdateTime, SortOrder::Descending);
    return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Ascending);
}

Error::Type PlaceChoice::forEach(const std::optional<SortRule> &sort, const Visit &visit) const
{
    const SearchRule selected = rule();
    const SortRule order = sort.value_or(this->sort());
    const bool isOwnOrder = order == this->sort();
    for (int offset = 0;;) {
        Error::Type error = Error::Success;
        SearchHandle handle;
        const Page page =
            since > 0 ? fullPlaces(selected, &error, &handle, order, offset)
                      : InternalPlaceManager().findMixedPlaces(selected, &error, &handle, order, offset, HEADERS);
        for (const auto &place : page) {
            if (isOwnOrder && endsBefore(*place))
                return error;
            if (accepts(*place) && !visit(*place))
                return error;
        }
        if (!handle.hasMoreData() || page.isEmpty())
            return error;
        offset += page.size();
    }
}

bool PlaceChoice::accepts(const AbstractPlace &place) const
{
    const Coordinates position = place.primaryCoordinates();
    return place.isPersisted() && (!box || box->contains(position))
           && (!radius || Utilities::calculateDistanceInMeter(centre, position) <= *radius)
           && changeTimeOf(place) >= since;
}

bool PlaceChoice::endsBefore(const AbstractPlace &place) const
{
    const Coordinates position = place.primaryCoordinates();
    if (centre.isValid())
        return radius && !(Utilities::calculateDistanceInMeter(centre, position) <= *radius);
    if (box)
        return !(Utilities::calculateDistanceInMeter(box->centre(), position) <= box->radius());
    return since > 0 && changeTimeOf(place) < since;
}

} // namespace tool
