// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/ProtocolTypes.h"

#include <string>
#include <utility>

namespace placesd
{

/// The outcome of a request, with the reason of a failure.
struct Status
{
    /// A code without a reason is allowed where the code is clear by itself.
    Status(orix_places_protocol::ReturnCode ended, std::string why = {}) // NOLINT(google-explicit-constructor)
        : code(ended)
        , reason(std::move(why))
    {}

    orix_places_protocol::ReturnCode code;
    /// One sentence in UTF-8 for the sender: what is wrong with which file, place or number, and the remedy. It may
    /// contain only values of the request and limits, except in replies that only the owner can get.
    std::string reason;
};

/// Compares codes only; reasons are for people.
inline bool operator==(const Status &a, const Status &b)
{
    return a.code == b.code;
}
inline bool operator!=(const Status &a, const Status &b)
{
    return !(a == b);
}

} // namespace placesd
