// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Log.h"

#include <array>
#include <cstdio>

#include <slog2.h>

namespace placesd
{

namespace
{

/// Maximum length of a message in bytes; longer messages are cut.
constexpr std::size_t MESSAGE_SIZE = 4096;

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

__attribute__((format(printf, 2, 3))) void write(unsigned char severity, const char *format, ...)
{
    static const slog2_buffer_t buffer = registerBuffer();
    va_list arguments;
    va_start(arguments, format);
    vslog2f(buffer, 0, severity, format, arguments);
    va_end(arguments);
}

__attribute__((format(printf, 2, 0))) void log(unsigned char severity, const char *format, va_list arguments)
{
    std::array<char, MESSAGE_SIZE> message = {};
    std::vsnprintf(message.data(), message.size(), format, arguments);
    // Paths and names come from clients; a line feed in them could fake a log line.
    for (char &c : message) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == '\x7f' || (byte < ' ' && byte != '\0'))
            c = '?';
    }
    write(severity, "%s", message.data());
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
