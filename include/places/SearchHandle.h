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
    /// Assigns the find and its position; the way back stays the target's own.
    SearchHandle &operator=(const SearchHandle &other);
    ~SearchHandle();

    /// True when the service has more results than were fetched.
    [[nodiscard]] bool hasMoreData() const;

private:
    friend class SearchHandlePrivate;
    ValuePointer<SearchHandlePrivate> d;
};

} // namespace vela::platform::places
