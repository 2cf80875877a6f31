// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <slog2.h>

#include <atomic>
#include <cstdarg>

namespace vela::platform::places
{

/// The library's log: the buffer set "places-api", registered on first use. Formats are those of printf. Thread-safe.
class Logger
{
public:
    __attribute__((format(printf, 1, 2))) static void fatal(const char *format, ...);
    __attribute__((format(printf, 1, 2))) static void error(const char *format, ...);
    __attribute__((format(printf, 1, 2))) static void warn(const char *format, ...);
    __attribute__((format(printf, 1, 2))) static void info(const char *format, ...);
    __attribute__((format(printf, 1, 2))) static void debug(const char *format, ...);

    /// Registers the buffer set if needed. Prints a failure; the next message tries again.
    static void init();

private:
    enum Buffer
    {
        HighRate,
        LowRate,
        BufferCount
    };
    static void write(Buffer buffer, int severity, const char *format, va_list arguments);

    static std::atomic<bool> initialized;
    static slog2_buffer_t buffer_handle[BufferCount];
};

} // namespace vela::platform::places
