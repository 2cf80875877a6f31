// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Error.h"

#include "protocol/ErrorPrivate.h"
#include "protocol/ProtocolTypes.h"
#include "protocol/ReasonText.h"

#include <algorithm>
#include <array>

namespace vela::platform::places
{

namespace
{

struct Failure
{
    Error::Type error = Error::Success;
    unsigned int size = 0;
    std::array<char, orix_places_protocol::REASON_SIZE> utf8 = {};
};

/// Bytes, not a QString: they need no destructor, so they are there as long as their thread, also for a static object
/// of an application that asks the service when the process ends.
thread_local Failure failure;

} // namespace

void ErrorPrivate::clear()
{
    failure.error = Error::Success;
    failure.size = 0;
}

void ErrorPrivate::set(Error::Type error, const char *utf8, unsigned int size)
{
    failure.error = error;
    failure.size = std::min(size, orix_places_protocol::REASON_SIZE);
    std::copy_n(utf8, failure.size, failure.utf8.data());
}

QString Error::reason(Type error)
{
    if (error != failure.error || failure.size == 0)
        return {};
    return orix_places_protocol::lineOf(failure.utf8.data(), static_cast<int>(failure.size));
}

} // namespace vela::platform::places
