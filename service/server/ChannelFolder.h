// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"

#include <string>

namespace placesd
{

/// Makes the channel folder and takes it for this process; nobody else serves its channels while the result is open.
/// The whole path is checked: each part belongs to root or to the user of this process, and others may not write to it,
/// unless it has the sticky bit. The folder itself belongs to this user, nobody else may write to it, and it is no
/// symbolic link. Throws std::system_error when another process has it, std::runtime_error when others could replace it
/// or put sockets there.
vela::system::channel::Descriptor takeChannelFolder();

/// Removes a socket that was left behind. False, with errno set, when something else has its name, or it stays.
bool removeSocket(const std::string &path);

} // namespace placesd
