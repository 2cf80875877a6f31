// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// UTF-8 (RFC 3629) from UTF-16, into memory that is already there.
namespace orix_places_protocol::utf8
{

/// A unit of UTF-16 gives at most this many bytes of UTF-8.
constexpr std::size_t MAX_BYTES_PER_UNIT = 3;

/// Number of bytes that write() writes.
std::size_t length(const char16_t *units, std::size_t count);

/// Writes the text, without a terminator, and returns the position behind it. A surrogate without its partner becomes
/// "?".
char *write(const char16_t *units, std::size_t count, char *out);

} // namespace orix_places_protocol::utf8
