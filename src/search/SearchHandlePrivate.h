// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "places/SearchHandle.h"
#include "places/SearchRule.h"
#include "places/SortRule.h"

#include <utility>
#include <vector>

namespace vela::platform::places
{

class SearchHandlePrivate
{
public:
    /// Cursor of the providers: primary and secondary index.
    using IndexMapping = std::pair<int, int>;

    SearchHandlePrivate() = default;
    /// Copies all values except the index mappings, which belong to the handle that received them.
    SearchHandlePrivate(const SearchHandlePrivate &other);
    SearchHandlePrivate &operator=(const SearchHandlePrivate &other);

    static SearchHandlePrivate *privateFromPublic(SearchHandle *handle) { return handle->d.get(); }
    static const SearchHandlePrivate *privateFromPublic(const SearchHandle *handle) { return handle->d.get(); }

    const SearchRule &searchRule() const { return m_searchRule; }
    void setSearchRule(const SearchRule &rule) { m_searchRule = rule; }
    const SortRule &sortRule() const { return m_sortRule; }
    void setSortRule(const SortRule &rule) { m_sortRule = rule; }
    bool isHeaderOnly() const { return m_headerOnly; }
    void setHeaderOnly(bool headerOnly) { m_headerOnly = headerOnly; }
    const Coordinates &mapCenter() const { return m_mapCenter; }
    void setMapCenter(const Coordinates &centre) { m_mapCenter = centre; }
    bool hasMoreData() const { return m_moreData; }
    void setMoreData(bool moreData) { m_moreData = moreData; }
    /// Start of the next page in the whole list of results.
    int index() const { return m_index; }
    void setIndex(int index) { m_index = index; }
    /// Sets the index to `offset` + `count`, at most the largest int.
    void setIndexBehind(int offset, int count);
    /// Cursor of the next results of the providers; -1 for none.
    int providerPrimaryIndex() const { return m_providerPrimaryIndex; }
    void setProviderPrimaryIndex(int index) { m_providerPrimaryIndex = index; }
    int providerSecondaryIndex() const { return m_providerSecondaryIndex; }
    void setProviderSecondaryIndex(int index) { m_providerSecondaryIndex = index; }

    /// Cursors of the results, by position in the whole list.
    const std::vector<IndexMapping> &indices() const { return m_indices; }
    /// Replaces the mapping at an existing position; otherwise appends it without filling a gap.
    void addIndexMapping(int position, int primary, int secondary);
    void clearIndices() noexcept { m_indices.clear(); }
    void swapIndices(SearchHandlePrivate &other) noexcept { m_indices.swap(other.m_indices); }

private:
    SearchRule m_searchRule;
    SortRule m_sortRule;
    bool m_headerOnly = false;
    Coordinates m_mapCenter;
    bool m_moreData = false;
    int m_index = 0;
    int m_providerPrimaryIndex = -1;
    int m_providerSecondaryIndex = -1;
    std::vector<IndexMapping> m_indices;
};

} // namespace vela::platform::places
