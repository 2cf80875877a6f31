// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sqlite3.h>
#include <SQLiteCpp/Exception.h>

namespace placesd
{

/// A stored record that cannot be decoded, on sound pages. The place can be removed, and other places are not affected.
class UnreadablePlace : public SQLite::Exception
{
public:
    UnreadablePlace()
        : SQLite::Exception("a stored place cannot be read", SQLITE_CORRUPT)
    {}
};

} // namespace placesd
