// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ResultList.h"

#include <places/AbstractPlace.h>

namespace tool
{

using namespace places;

void ResultList::startSearch(const QList<SearchResultGroup::Type> &groups)
{
    QVector<Group> next;
    for (const SearchResultGroup::Type group : groups) {
        next.append({group, {}, Error::Success, false});
        for (const Group &before : std::as_const(m_groups)) {
            if (before.group == group)
                next.last() = before;
        }
    }
    m_groups = next;
    makeStale();
}

void ResultList::makeStale()
{
    for (Group &group : m_groups)
        group.isFresh = false;
    m_chosen.reset();
}

void ResultList::take(Error::Type error, const SearchResult &result)
{
    for (Group &group : m_groups) {
        if (group.group == result.source())
            group = {group.group, result, error, true};
    }
}

QVector<ResultList::PlacePointer> ResultList::choices() const
{
    QVector<PlacePointer> places;
    for (const Group &group : m_groups) {
        if (group.isFresh)
            places += group.result.result().toVector();
    }
    return places;
}

bool ResultList::isFirstKnown() const
{
    for (const Group &group : m_groups) {
        if (!group.isFresh)
            return false;
        if (!group.result.result().isEmpty())
            return true;
    }
    return true;
}

ResultList::PlacePointer ResultList::chosen() const
{
    return m_chosen || !isFirstKnown() ? m_chosen : choices().value(0);
}

bool ResultList::move(int rows)
{
    const QVector<PlacePointer> places = choices();
    if (places.isEmpty())
        return false;
    // With no choice yet, the first step down chooses the first place.
    m_chosen = places[qBound(0, places.indexOf(chosen()) + rows, places.size() - 1)];
    return true;
}

} // namespace tool
