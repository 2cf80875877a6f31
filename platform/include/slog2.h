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
    SLOG2_SHUTDOWN = 0, ///< The system is going down.
    SLOG2_CRITICAL = 1, ///< The program cannot go on.
    SLOG2_ERROR = 2,    ///< Something failed.
    SLOG2_WARNING = 3,  ///< Something is not as it should be.
    SLOG2_NOTICE = 4,   ///< Something out of the ordinary happened.
    SLOG2_INFO = 5,     ///< Something happened.
    SLOG2_DEBUG1 = 6,   ///< For whoever looks for a fault.
    SLOG2_DEBUG2 = 7    ///< The same, in more detail.
};

enum
{
    SLOG2_MAX_BUFFERS = 4 ///< Most buffers that one buffer set may have.
};

/// One buffer of a set.
typedef struct
{
    const char *buffer_name;
    int num_pages; ///< Room for messages, in pages of 4 KiB.
} slog2_buffer_config_t;

/// What a program registers.
typedef struct
{
    int num_buffers;
    const char *buffer_set_name;
    uint8_t verbosity_level; ///< Messages less severe (of a higher number) than this are dropped.
    slog2_buffer_config_t buffer_config[SLOG2_MAX_BUFFERS];
} slog2_buffer_set_config_t;

/// A registered buffer; null before registration.
typedef struct _slog2_buffer *slog2_buffer_t;

/// Registers a buffer set and writes the handles of its buffers, `num_buffers` of them, to `handles`. They are valid
/// until the process ends. Returns 0, or -1 on failure. `flags` is 0. Safe on any thread.
int slog2_register(const slog2_buffer_set_config_t *config, slog2_buffer_t *handles, uint32_t flags);

/// Writes a message as vprintf() would format it. A null handle drops it. Returns 0, or -1 on failure. Safe on any
/// thread.
int vslog2f(slog2_buffer_t buffer, uint16_t code, uint8_t severity, const char *format, va_list arguments);

#ifdef __cplusplus
}
#endif
