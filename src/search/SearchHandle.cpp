// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchHandle.h"

#include "model/DebugParts.h"
#include "search/SearchHandlePrivate.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vela::platform::places
{

namespace
{

bool hasIndices(const ValuePointer<SearchHandlePrivate> &handle)
{
    return !handle->indices().empty();
}

} // namespace

SearchHandlePrivate::SearchHandlePrivate(const SearchHandlePrivate &other)
    : SearchHandlePrivate()
{
    *this = other;
}

SearchHandlePrivate &SearchHandlePrivate::operator=(const SearchHandlePrivate &other)
{
    m_searchRule = other.m_searchRule;
    m_sortRule = other.m_sortRule;
    m_headerOnly = other.m_headerOnly;
    m_mapCenter = other.m_mapCenter;
    m_moreData = other.m_moreData;
    m_index = other.m_index;
    m_providerPrimaryIndex = other.m_providerPrimaryIndex;
    m_providerSecondaryIndex = other.m_providerSecondaryIndex;
    return *this;
}

void SearchHandlePrivate::setIndexBehind(int offset, int count)
{
    m_index = static_cast<int>(std::min<qint64>(qint64(offset) + count, std::numeric_limits<int>::max()));
}

void SearchHandlePrivate::addIndexMapping(int position, int primary, int secondary)
{
    const IndexMapping mapping(primary, secondary);
    if (position >= 0 && static_cast<std::size_t>(position) < m_indices.size())
        m_indices[static_cast<std::size_t>(position)] = mapping;
    else
        m_indices.push_back(mapping);
}

SearchHandle::SearchHandle()
    : d(new SearchHandlePrivate)
{}

SearchHandle::SearchHandle(const SearchHandle &other) = default;
SearchHandle &SearchHandle::operator=(const SearchHandle &other) = default;
SearchHandle::~SearchHandle() = default;

SearchHandle::SearchHandle(SearchHandle &&other) noexcept
    : d(std::move(other.d))
{
    if (hasIndices(d))
        d->clearIndices();
}

SearchHandle &SearchHandle::operator=(SearchHandle &&other) noexcept
{
    if (this != &other)
        SearchHandle(std::move(other)).swap(*this);
    return *this;
}

void SearchHandle::swap(SearchHandle &other) noexcept
{
    d.swap(other.d);
    if (hasIndices(d) || hasIndices(other.d))
        d->swapIndices(*other.d);
}

bool SearchHandle::hasMoreData() const
{
    return d->hasMoreData();
}

QDebug operator<<(QDebug debug, const SearchHandle &handle)
{
    DebugParts(debug, "SearchHandle")
        .addLabelled("next", SearchHandlePrivate::privateFromPublic(&handle)->index())
        .addIf(handle.hasMoreData(), "more");
    return debug;
}

} // namespace vela::platform::places
