// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>

/// Copies of databases, page by page, as files that are on the disk when they get their names.
namespace placesd
{

/// Copies all pages. Throws SQLite::Exception, of kind interrupt past the deadline.
void copyPages(SQLite::Database &to, SQLite::Database &from, Deadline deadline);

/// Writes one state of a database, with what is in its write-ahead log, into a new file, while others write.
void writeSnapshot(const std::string &database, const std::string &fresh, Deadline deadline);

/// Renames a new file over `path` once it is on the disk. Throws std::system_error.
void moveIntoPlace(const std::string &fresh, const std::string &path);

} // namespace placesd
