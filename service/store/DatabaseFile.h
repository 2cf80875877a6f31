// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <string>

/// The files of a database of places in the file system.
namespace placesd
{

/// Throws std::runtime_error with the file and the reason when the path exists and is neither an empty file nor a
/// database of places of this or an older version. Does not change any file.
void requirePlacesFile(const std::string &path);

/// Whether a process has the database open.
bool isInUse(const std::string &database);

/// Sets mode 0600 for the database and its companion files, and logs each change.
void makePrivate(const std::string &database);

/// Removes words of deleted texts from the word indexes, which keep them until their parts are merged. Stops at the
/// deadline with a part done and logs that, like any failure.
void purgeRemovedWords(const std::string &database, Deadline deadline);

/// Whether a path is the database or a companion file of SQLite or the service. Does not open files: closing one would
/// release the locks of this process.
bool isFileOf(const std::string &database, const std::string &path);

} // namespace placesd
