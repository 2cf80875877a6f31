// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// UTF-16 to UTF-8 (RFC 3629) conversion to existing memory.
namespace orix_places_protocol::utf8
{

/// Maximum number of UTF-8 bytes per UTF-16 unit.
constexpr std::size_t MAX_BYTES_PER_UNIT = 3;

/// Number of bytes that write() writes.
std::size_t length(const char16_t *units, std::size_t count);

/// Writes the text without a terminator and returns the end. An unpaired surrogate becomes "?".
char *write(const char16_t *units, std::size_t count, char *out);

} // namespace orix_places_protocol::utf8
