// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace SQLite
{
class Exception;
}

namespace placesd
{

/// Why SQLite failed, as one sentence for a person: the file, what SQLite says of it, and what can be done.
std::string storageReason(const std::string &file, const SQLite::Exception &error);

} // namespace placesd
