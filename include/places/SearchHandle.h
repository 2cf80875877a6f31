// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

namespace vela::platform::places
{

class SearchHandlePrivate;

/// Remembers a find so that further pages of it can be fetched. A handle belongs to one thread at a time.
class PLACES_EXPORT SearchHandle
{
public:
    /// A handle of no find.
    SearchHandle();
    /// Copies the find and its position, but not the way back: a copy pages forwards only.
    SearchHandle(const SearchHandle &other);
    /// Takes the find and its position, but not the way back, as a copy does. `other` is a handle of no find from then
    /// on.
    SearchHandle(SearchHandle &&other) noexcept;
    /// Assigns the find and its position; the way back stays the target's own.
    SearchHandle &operator=(const SearchHandle &other);
    SearchHandle &operator=(SearchHandle &&other) noexcept;
    ~SearchHandle();

    /// Exchanges the finds and their positions without a copy; the way back stays with each handle.
    void swap(SearchHandle &other) noexcept;
    friend void swap(SearchHandle &left, SearchHandle &right) noexcept { left.swap(right); }

    /// True when the service has more results than were fetched.
    [[nodiscard]] bool hasMoreData() const;

private:
    friend class SearchHandlePrivate;
    ValuePointer<SearchHandlePrivate> d;
};

/// For debugging: where the next page starts, and whether there is one.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SearchHandle &handle);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SearchHandle, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SearchHandle)
