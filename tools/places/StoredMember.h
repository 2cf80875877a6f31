// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MemberKey.h"

#include <places/Error.h>

#include <memory>

namespace tool
{

/// Finds the stored place that equals a member of a file: by its id, else by its name and position. Null when there is
/// none and on failure; `error` tells which. For any thread.
std::unique_ptr<places::Place> findStoredMember(const MemberKey &key, places::Error::Type &error);

} // namespace tool
