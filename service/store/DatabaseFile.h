// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"

#include <string>

/// The file of a database of places and those beside it, as the file system has them.
namespace placesd
{

/// Throws std::runtime_error, which names the file and the reason, when something is there that is neither an empty
/// file nor a database of places of this version or an older one. Changes nothing, neither in it nor beside it.
void requirePlacesFile(const std::string &path);

/// Whether a process has the database open, or is at work on it.
bool isInUse(const std::string &database);

/// Gives the database and what SQLite keeps beside it mode 0600, and says in the log what had another one.
void makePrivate(const std::string &database);

/// Takes the words of removed texts out of the indexes of words, which keep them until their parts are merged. Stops at
/// the deadline with a part of it done, and then says so in the log, as of a failure.
void forgetRemovedWords(const std::string &database, Deadline deadline);

/// Whether a path is that of the database, or of a file that SQLite or the service keeps beside it. No file is opened:
/// to close one of them would end the locks of this process.
bool isFileOf(const std::string &database, const std::string &path);

} // namespace placesd
