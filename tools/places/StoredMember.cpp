// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "StoredMember.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/SearchHandle.h>

#include <algorithm>
#include <vector>

namespace tool
{

using namespace places;

namespace
{

/// Places per answer. More than the nearest ones are rarely needed.
constexpr int NEAREST_PAGE_SIZE = 4;
/// Places per answer, and maximum number of checked places, when there is no position to sort by.
constexpr int PAGE_SIZE = 250;
constexpr int MOST_WITHOUT_POSITION = 1000;

using IsSame = bool (MemberKey::*)(const MemberKey &) const;

/// Candidates for one member, page by page.
class Candidates
{
public:
    enum class Order
    {
        Any,
        NearestFirst, ///< If the member has a position.
    };

    Candidates(const MemberKey &key, const SearchRule &rule, Order order = Order::NearestFirst)
        : m_key(key)
        , m_rule(rule)
        , m_pageSize(order == Order::Any || key.position.isValid() ? NEAREST_PAGE_SIZE : PAGE_SIZE)
    {
        if (order == Order::NearestFirst && key.position.isValid())
            m_sort = SortRule::createDistanceSortRule(key.position, SortOrder::Ascending);
    }

    /// Fetches the next page.
    void fetch()
    {
        SearchHandle handle;
        m_page.clear();
        const auto page = m_manager.findPlaces(m_rule, &m_error, &handle, m_sort, m_offset, m_pageSize);
        for (Place *place : page)
            m_page.emplace_back(place);
        m_offset += static_cast<int>(m_page.size());
        m_hasMore = handle.hasMoreData() && !m_page.empty();
        if (!m_page.empty())
            m_last = MemberKey::of(*m_page.back());
    }

    /// The first place of the page that is the same; null when none is.
    std::unique_ptr<Place> take(IsSame isSame)
    {
        const auto found = std::find_if(m_page.begin(), m_page.end(), [&](const std::unique_ptr<Place> &place) {
            return place && place->isPersisted() && (m_key.*isSame)(MemberKey::of(*place));
        });
        return found == m_page.end() ? nullptr : std::move(*found);
    }

    std::unique_ptr<Place> next(IsSame isSame)
    {
        fetch();
        return take(isSame);
    }

    /// True when all candidates were checked.
    [[nodiscard]] bool isComplete() const { return m_error == Error::Success && !m_hasMore; }
    /// True when a later page may contain a match: a place within `radius` metres or, without a position, any of the
    /// places to be checked.
    [[nodiscard]] bool hasMoreWithin(double radius) const
    {
        return m_hasMore
               && (m_key.position.isValid() ? m_key.isWithin(m_last, radius) : m_offset < MOST_WITHOUT_POSITION);
    }
    /// A value that is too long for a search is in no place. The service refuses it when the place is stored.
    [[nodiscard]] Error::Type error() const { return m_error == Error::LimitExceeded ? Error::Success : m_error; }

private:
    const InternalPlaceManager m_manager;
    const MemberKey &m_key;
    const SearchRule m_rule;
    const int m_pageSize;
    SortRule m_sort;
    std::vector<std::unique_ptr<Place>> m_page;
    int m_offset = 0;
    bool m_hasMore = false;
    MemberKey m_last;
    Error::Type m_error = Error::Success;
};

SearchRule nameRule(const MemberKey &key)
{
    return SearchRule::createNameRule(SearchOperator::Equals, key.name);
}

SearchRule idRule(const MemberKey &key)
{
    return SearchRule::createAuxiliaryPairRule(QLatin1String(MemberKey::ID_PROPERTY), SearchOperator::Equals, key.id);
}

/// A nearby place is among the nearest ones with the id. A place with the same name may be anywhere.
std::unique_ptr<Place> findById(const MemberKey &key, Error::Type &error)
{
    Candidates nearest(key, idRule(key));
    std::unique_ptr<Place> found = nearest.next(&MemberKey::isSameById);
    error = nearest.error();
    if (found || nearest.isComplete() || error != Error::Success)
        return found;
    Candidates namesakes(key, SearchRule::createAndRule(idRule(key), nameRule(key)));
    found = namesakes.next(&MemberKey::isSameById);
    error = namesakes.error();
    while (!found && nearest.hasMoreWithin(MemberKey::SAME_ID_RADIUS) && error == Error::Success) {
        found = nearest.next(&MemberKey::isSameById);
        error = nearest.error();
    }
    return found;
}

std::unique_ptr<Place> findByName(const MemberKey &key, Error::Type &error)
{
    if (key.name.isEmpty())
        return nullptr;
    Candidates namesakes(key, nameRule(key));
    std::unique_ptr<Place> found;
    do {
        found = namesakes.next(&MemberKey::isSameByName);
        error = namesakes.error();
    } while (!found && namesakes.hasMoreWithin(MemberKey::SAME_NAME_RADIUS) && error == Error::Success);
    return found;
}

} // namespace

/// Most members have few candidates, so one request is enough.
std::unique_ptr<Place> findStoredMember(const MemberKey &key, Error::Type &error)
{
    error = Error::Success;
    if (key.id.isEmpty())
        return findByName(key, error);
    Candidates any(key, SearchRule::createOrRule(idRule(key), nameRule(key)), Candidates::Order::Any);
    any.fetch();
    error = any.error();
    std::unique_ptr<Place> found = any.take(&MemberKey::isSameById);
    if (!found && any.isComplete())
        found = any.take(&MemberKey::isSameByName);
    if (found || any.isComplete() || error != Error::Success)
        return found;
    found = findById(key, error);
    return found || error != Error::Success ? std::move(found) : findByName(key, error);
}

} // namespace tool
