// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/SearchHandle.h>
#include <places/SearchResultGroup.h>

#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>

namespace vela::platform::places
{

class AbstractPlace;
class SearchResultPrivate;

/// Result of a search in one group. Copies share the places.
class PLACES_EXPORT SearchResult
{
public:
    SearchResult();
    SearchResult(const SearchResult &other);
    /// Moves the value; `other` becomes a result of no group.
    SearchResult(SearchResult &&other) noexcept;
    SearchResult &operator=(const SearchResult &other);
    SearchResult &operator=(SearchResult &&other) noexcept;
    ~SearchResult();

    /// Swaps the values without a copy.
    void swap(SearchResult &other) noexcept { d.swap(other.d); }
    friend void swap(SearchResult &left, SearchResult &right) noexcept { left.swap(right); }

    /// The group that was searched; SearchResultGroup::None when unset.
    [[nodiscard]] SearchResultGroup::Type source() const;
    /// The handle for fetching further pages.
    [[nodiscard]] SearchHandle handle() const;
    /// The found places.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>> result() const;
    /// Why the search failed, like Error::reason(); empty on success and when no reason is known.
    [[nodiscard]] QString reason() const;

private:
    friend class SearchResultPrivate;
    ValuePointer<SearchResultPrivate> d;
};

/// For debugging: the group, the number of places and the reason of a failure.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SearchResult &result);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SearchResult, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SearchResult)
