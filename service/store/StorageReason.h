// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace SQLite
{
class Exception;
}

namespace placesd
{

/// The reason of a failure of SQLite, as one sentence for people: file, error and remedy.
std::string storageReason(const std::string &file, const SQLite::Exception &error);

} // namespace placesd
