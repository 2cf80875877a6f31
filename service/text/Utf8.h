// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace placesd
{

/// The code point at `position` of UTF-8; advances the position. Invalid text gives any code point, but is never read
/// beyond its end.
inline unsigned codePointAt(std::string_view text, std::size_t &position)
{
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : static_cast<unsigned char>(0);
    };
    const unsigned first = byte(position);
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    unsigned code = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
        code = (code << 6) | (byte(position + i) & 0x3FU);
    position += length;
    return code;
}

/// True for a continuation byte.
inline bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

inline bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

} // namespace placesd
