// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

/// Makes a session key and writes the session object below `root`, readable by this user only, in one step. Returns the
/// key; throws std::system_error when the object cannot be written.
std::string publishSessionKey(const std::string &root);

} // namespace placesd
