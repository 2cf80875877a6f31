// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

// Each throws std::system_error, which names the path and the reason, when it cannot be opened for reading or is the
// other of the two.
void requireReadableFile(const std::string &path);
void requireReadableFolder(const std::string &path);

} // namespace placesd
