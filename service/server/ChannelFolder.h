// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"

#include <string>

namespace placesd
{

/// Creates the channel folder and locks it for this process, as long as the result is open. Checks the whole path: each
/// part belongs to root or to the user of this process, and is not writable by others unless it has the sticky bit. The
/// folder itself belongs to this user, is writable only by this user, and is not a symbolic link. Throws
/// std::system_error when another process has locked it, and std::runtime_error when other users could replace it or
/// create sockets in it.
vela::system::channel::Descriptor takeChannelFolder();

/// Removes a stale socket. False, with errno set, when the path is not a socket or cannot be removed.
bool removeSocket(const std::string &path);

} // namespace placesd
