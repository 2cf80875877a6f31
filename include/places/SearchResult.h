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

/// What one group of a search found. Copies share the places.
class PLACES_EXPORT SearchResult
{
public:
    SearchResult();
    SearchResult(const SearchResult &other);
    /// Takes the value of `other`, which is a result of no group from then on.
    SearchResult(SearchResult &&other) noexcept;
    SearchResult &operator=(const SearchResult &other);
    SearchResult &operator=(SearchResult &&other) noexcept;
    ~SearchResult();

    /// Exchanges the values without a copy.
    void swap(SearchResult &other) noexcept { d.swap(other.d); }
    friend void swap(SearchResult &left, SearchResult &right) noexcept { left.swap(right); }

    /// The group that was searched; SearchResultGroup::None when unset.
    [[nodiscard]] SearchResultGroup::Type source() const;
    /// The handle to fetch further pages with.
    [[nodiscard]] SearchHandle handle() const;
    /// The places that were found.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>> result() const;
    /// Why the search failed, as Error::reason() would say it; empty when it did not, or when no reason is known.
    [[nodiscard]] QString reason() const;

private:
    friend class SearchResultPrivate;
    ValuePointer<SearchResultPrivate> d;
};

/// For debugging: the group, how many places were found, and why it failed.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SearchResult &result);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SearchResult, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SearchResult)
