// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>

/// Copies of databases, page by page. A copy is on the disk before it gets its final name.
namespace placesd
{

/// Copies all pages. Throws SQLite::Exception; after the deadline with the code for interrupt.
void copyPages(SQLite::Database &to, SQLite::Database &from, Deadline deadline);

/// Writes a snapshot of a database, including its write-ahead log, to a new file during other writes.
void writeSnapshot(const std::string &database, const std::string &fresh, Deadline deadline);

/// Renames a new file to `path` after it is on the disk. Throws std::system_error.
void moveIntoPlace(const std::string &fresh, const std::string &path);

} // namespace placesd
