// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/Utf8.h"

#include <cstdint>
#include <cstring>

namespace orix_places_protocol::utf8
{

namespace
{

constexpr char32_t INVALID = '?';

bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

/// Reads the code point at `unit` and advances.
char32_t takeCodePoint(const char16_t *&unit, const char16_t *end)
{
    const char16_t first = *unit++;
    if (isHighSurrogate(first) && unit != end && isLowSurrogate(*unit))
        return 0x10000 + ((static_cast<char32_t>(first) - 0xD800) << 10) + (static_cast<char32_t>(*unit++) - 0xDC00);
    return isHighSurrogate(first) || isLowSurrogate(first) ? INVALID : first;
}

/// True when the four units from `unit` on are ASCII.
bool fourAreAscii(const char16_t *unit)
{
    std::uint64_t four = 0;
    std::memcpy(&four, unit, sizeof four);
    return (four & 0xFF80FF80FF80FF80) == 0;
}

char continuation(char32_t bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

char *writeCodePoint(char32_t point, char *out)
{
    if (point < 0x80) {
        *out++ = static_cast<char>(point);
        return out;
    }
    if (point < 0x800) {
        *out++ = static_cast<char>(0xC0 | (point >> 6));
    } else {
        if (point < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (point >> 12));
        } else {
            *out++ = static_cast<char>(0xF0 | (point >> 18));
            *out++ = continuation(point >> 12);
        }
        *out++ = continuation(point >> 6);
    }
    *out++ = continuation(point);
    return out;
}

} // namespace

std::size_t length(const char16_t *units, std::size_t count)
{
    std::size_t bytes = 0;
    for (const char16_t *unit = units, *end = units + count; unit != end;) {
        const char32_t point = takeCodePoint(unit, end);
        bytes += point < 0x80 ? 1U : point < 0x800 ? 2U : point < 0x10000 ? 3U : 4U;
    }
    return bytes;
}

char *write(const char16_t *units, std::size_t count, char *out)
{
    const char16_t *unit = units;
    const char16_t *end = units + count;
    while (unit != end) {
        for (; end - unit >= 4 && fourAreAscii(unit); unit += 4, out += 4) {
            for (int i = 0; i < 4; ++i)
                out[i] = static_cast<char>(unit[i]);
        }
        if (unit != end)
            out = writeCodePoint(takeCodePoint(unit, end), out);
    }
    return out;
}

} // namespace orix_places_protocol::utf8
