// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

// Each function throws std::system_error with path and reason when the path is not readable or not of the required
// kind.
void requireReadableFile(const std::string &path);
void requireReadableFolder(const std::string &path);

} // namespace placesd
