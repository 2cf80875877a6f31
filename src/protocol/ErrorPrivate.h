// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Error.h"

namespace vela::platform::places
{

/// The failure for Error::reason(), per thread. Functions neither allocate nor throw.
class ErrorPrivate
{
public:
    /// Clears the failure before a new request.
    static void clear();
    /// Keeps a failure and its reason in UTF-8, which may contain any bytes.
    /// @param size bytes, at most REASON_SIZE.
    static void set(Error::Type error, const char *utf8, unsigned int size);
};

} // namespace vela::platform::places
