// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/ProtocolTypes.h"

#include <string>
#include <utility>

namespace placesd
{

/// How a request ended and, where it failed, why.
struct Status
{
    /// A code says enough where its meaning leaves no question open.
    Status(orix_places_protocol::ReturnCode ended, std::string why = {}) // NOLINT(google-explicit-constructor)
        : code(ended)
        , reason(std::move(why))
    {}

    orix_places_protocol::ReturnCode code;
    /// One sentence in UTF-8 for the sender of the request: what is wrong with which file, place or number, and what
    /// can be done. It tells nothing but what is in the request and limits, unless only the owner can have sent that.
    std::string reason;
};

/// The code alone tells two outcomes apart; reasons are for people.
inline bool operator==(const Status &a, const Status &b)
{
    return a.code == b.code;
}
inline bool operator!=(const Status &a, const Status &b)
{
    return !(a == b);
}

} // namespace placesd
