// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sqlite3.h>
#include <SQLiteCpp/Exception.h>

namespace placesd
{

/// A stored record that is none, on pages that are sound. Such a place can be removed, and nothing else suffers.
class UnreadablePlace : public SQLite::Exception
{
public:
    UnreadablePlace()
        : SQLite::Exception("a stored place cannot be read", SQLITE_CORRUPT)
    {}
};

} // namespace placesd
