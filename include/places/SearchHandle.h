// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

namespace vela::platform::places
{

class SearchHandlePrivate;

/// State of a find for fetching further pages. Used by one thread at a time.
class PLACES_EXPORT SearchHandle
{
public:
    /// A handle without a find.
    SearchHandle();
    /// Copies the find and its position, but not the cursors of earlier pages: a copy pages forwards only.
    SearchHandle(const SearchHandle &other);
    /// Moves the find and its position, but not the cursors of earlier pages, like a copy. `other` becomes a handle
    /// without a find.
    SearchHandle(SearchHandle &&other) noexcept;
    /// Assigns the find and its position; the target keeps its cursors of earlier pages.
    SearchHandle &operator=(const SearchHandle &other);
    SearchHandle &operator=(SearchHandle &&other) noexcept;
    ~SearchHandle();

    /// Swaps the finds and their positions without a copy; each handle keeps its cursors of earlier pages.
    void swap(SearchHandle &other) noexcept;
    friend void swap(SearchHandle &left, SearchHandle &right) noexcept { left.swap(right); }

    /// True when the service has more results.
    [[nodiscard]] bool hasMoreData() const;

private:
    friend class SearchHandlePrivate;
    ValuePointer<SearchHandlePrivate> d;
};

/// For debugging: start of the next page, and whether there is one.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SearchHandle &handle);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SearchHandle, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SearchHandle)
