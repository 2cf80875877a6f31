// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Error.h"

namespace vela::platform::places
{

/// The failure that Error::reason() explains. Each thread has its own; nothing here allocates or throws.
class ErrorPrivate
{
public:
    /// Forgets the failure: a new request begins.
    static void clear();
    /// Keeps a failure and its reason in UTF-8, which may be anything that a service sends.
    /// @param size bytes, at most REASON_SIZE.
    static void set(Error::Type error, const char *utf8, unsigned int size);
};

} // namespace vela::platform::places
