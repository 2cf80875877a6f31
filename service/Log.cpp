// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Log.h"

#include <slog2.h>

namespace placesd
{

namespace
{

slog2_buffer_t registerBuffer()
{
    slog2_buffer_set_config_t config = {};
    config.num_buffers = 1;
    config.buffer_set_name = "placesd";
    config.verbosity_level = SLOG2_INFO;
    config.buffer_config[0] = {"placesd", 1};
    slog2_buffer_t buffer = nullptr;
    slog2_register(&config, &buffer, 0);
    return buffer;
}

void log(unsigned char severity, const char *format, va_list arguments)
{
    static const slog2_buffer_t buffer = registerBuffer();
    vslog2f(buffer, 0, severity, format, arguments);
}

} // namespace

void logError(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(SLOG2_ERROR, format, arguments);
    va_end(arguments);
}

void logInfo(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    log(SLOG2_INFO, format, arguments);
    va_end(arguments);
}

} // namespace placesd
