// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

namespace placesd
{

// Each function writes a message to the system log, in the buffer set "placesd". The format is that of printf. A
// message is one line: control characters are replaced with question marks.
__attribute__((format(printf, 1, 2))) void logError(const char *format, ...);
__attribute__((format(printf, 1, 2))) void logInfo(const char *format, ...);

} // namespace placesd
