// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/Logger.h"

#include <iostream>
#include <mutex>

namespace vela::platform::places
{

namespace
{

std::mutex registrationMutex;

} // namespace

std::atomic<bool> Logger::initialized{false};
slog2_buffer_t Logger::buffer_handle[BufferCount] = {};

void Logger::init()
{
    if (initialized)
        return;
    const std::lock_guard<std::mutex> lock(registrationMutex);
    if (initialized)
        return;
    slog2_buffer_set_config_t config = {};
    config.num_buffers = BufferCount;
    config.buffer_set_name = "places-api";
    config.verbosity_level = SLOG2_INFO;
    config.buffer_config[HighRate] = {"high_rate", 2};
    config.buffer_config[LowRate] = {"low_rate", 1};
    initialized = slog2_register(&config, buffer_handle, 0) != -1;
    if (!initialized)
        std::cerr << "places-api: Error registering slogger2 buffer." << std::endl;
}

void Logger::write(Buffer buffer, int severity, const char *format, va_list arguments)
{
    init();
    // Before a successful registration the handle has its last value, and slog2 decides about the message.
    vslog2f(buffer_handle[buffer], 0, static_cast<std::uint8_t>(severity), format, arguments);
}

// Five similar functions: C's variable arguments cannot be passed on in another way.

void Logger::fatal(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write(LowRate, SLOG2_CRITICAL, format, arguments);
    va_end(arguments);
}

void Logger::error(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write(LowRate, SLOG2_ERROR, format, arguments);
    va_end(arguments);
}

void Logger::warn(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write(LowRate, SLOG2_WARNING, format, arguments);
    va_end(arguments);
}

void Logger::info(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write(LowRate, SLOG2_INFO, format, arguments);
    va_end(arguments);
}

void Logger::debug(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write(HighRate, SLOG2_DEBUG1, format, arguments);
    va_end(arguments);
}

} // namespace vela::platform::places
