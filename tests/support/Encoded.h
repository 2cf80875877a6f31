// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/PlacesAPIEncoder.h"

#include <gtest/gtest.h>

#include <string>

/// What an encoder has written.
inline std::string bytesOf(const orix_places_protocol::PlacesBaseEncoder &encoder)
{
    char *data = nullptr;
    int length = -1;
    EXPECT_TRUE(encoder.getData(data, length));
    return std::string(data, static_cast<std::size_t>(length));
}

/// What the library writes of a request or a part of one.
template <typename Encode>
std::string encoded(const Encode &encode)
{
    orix_places_protocol::PlacesAPIEncoder encoder;
    EXPECT_TRUE(encode(encoder));
    return bytesOf(encoder);
}
