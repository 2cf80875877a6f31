// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The platform's system log.

#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum
{
    SLOG2_SHUTDOWN = 0, ///< The system shuts down.
    SLOG2_CRITICAL = 1, ///< The program cannot continue.
    SLOG2_ERROR = 2,    ///< An operation failed.
    SLOG2_WARNING = 3,  ///< An unexpected state.
    SLOG2_NOTICE = 4,   ///< An unusual event.
    SLOG2_INFO = 5,     ///< A normal event.
    SLOG2_DEBUG1 = 6,   ///< For debugging.
    SLOG2_DEBUG2 = 7    ///< For debugging, with more detail.
};

enum
{
    SLOG2_MAX_BUFFERS = 4 ///< Maximum number of buffers of a buffer set.
};

/// One buffer of a set.
typedef struct
{
    const char *buffer_name;
    int num_pages; ///< Size of the buffer in pages of 4 KiB.
} slog2_buffer_config_t;

/// Registration of a program.
typedef struct
{
    int num_buffers;
    const char *buffer_set_name;
    uint8_t verbosity_level; ///< Messages of lower severity (a higher number) are dropped.
    slog2_buffer_config_t buffer_config[SLOG2_MAX_BUFFERS];
} slog2_buffer_set_config_t;

/// A registered buffer; null before registration.
typedef struct _slog2_buffer *slog2_buffer_t;

/// Registers a buffer set and writes its `num_buffers` buffer handles to `handles`. They are valid until the process
/// ends. Returns 0, or -1 on failure. `flags` is 0. Thread-safe.
int slog2_register(const slog2_buffer_set_config_t *config, slog2_buffer_t *handles, uint32_t flags);

/// Writes a message, formatted like vprintf(). A null handle drops it. Returns 0, or -1 on failure. Thread-safe.
int vslog2f(slog2_buffer_t buffer, uint16_t code, uint8_t severity, const char *format, va_list arguments);

#ifdef __cplusplus
}
#endif
