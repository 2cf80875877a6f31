// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

/// Creates a session key and writes the session object below `root` atomically, readable by this user only. Returns the
/// key; throws std::system_error when writing fails.
std::string publishSessionKey(const std::string &root);

} // namespace placesd
