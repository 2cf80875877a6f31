// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "slog2.h"

#include "Export.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <mutex>
#include <string>
#include <string_view>

#include <syslog.h>
#include <unistd.h>

struct _slog2_buffer
{
    std::string setName;
    std::string name;
    std::uint8_t verbosity = SLOG2_INFO;
};

namespace
{

struct Severity
{
    int syslogPriority;
    const char *name;
};

/// By slog2 severity. Shutdown is not LOG_EMERG, which writes to every terminal.
constexpr Severity SEVERITIES[] = {
    {LOG_ALERT, "shutdown"}, {LOG_CRIT, "critical"}, {LOG_ERR, "error"},   {LOG_WARNING, "warning"},
    {LOG_NOTICE, "notice"},  {LOG_INFO, "info"},     {LOG_DEBUG, "debug"}, {LOG_DEBUG, "debug"},
};

/// Maximum length of a message in bytes; longer messages are cut.
constexpr std::size_t MESSAGE_SIZE = 4096;

std::mutex registryMutex;

/// Buffers stay registered until the process ends, for log calls in static destructors.
std::list<_slog2_buffer> &registry()
{
    static auto *buffers = new std::list<_slog2_buffer>;
    return *buffers;
}

bool logsToStandardError()
{
    const char *target = std::getenv("VELA_LOG");
    return target && std::string_view(target) == "stderr";
}

/// One write per line, so that lines of several threads do not mix.
void writeToStandardError(const _slog2_buffer &buffer, const Severity &severity, const char *message)
{
    char line[MESSAGE_SIZE + 128];
    const int length = std::snprintf(line, sizeof line, "%s %s: %s\n", buffer.setName.c_str(), severity.name, message);
    const auto count = std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof line - 1);
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line, count);
}

} // namespace

VELA_SYSTEM_EXPORT int slog2_register(const slog2_buffer_set_config_t *config, slog2_buffer_t *handles, std::uint32_t)
{
    if (!config || !handles || !config->buffer_set_name || config->num_buffers < 1
        || config->num_buffers > SLOG2_MAX_BUFFERS)
        return -1;
    try {
        const std::lock_guard<std::mutex> lock(registryMutex);
        for (int i = 0; i < config->num_buffers; ++i) {
            const char *name = config->buffer_config[i].buffer_name;
            handles[i] = &registry().emplace_back(
                _slog2_buffer{config->buffer_set_name, name ? name : "", config->verbosity_level});
        }
        return 0;
    } catch (const std::bad_alloc &) {
        return -1;
    }
}

VELA_SYSTEM_EXPORT int vslog2f(slog2_buffer_t buffer, std::uint16_t, std::uint8_t severity, const char *format,
                               va_list arguments)
{
    if (!buffer || !format || severity >= std::size(SEVERITIES))
        return -1;
    if (severity > buffer->verbosity)
        return 0;

    char message[MESSAGE_SIZE];
    if (std::vsnprintf(message, sizeof message, format, arguments) < 0)
        return -1;
    if (logsToStandardError())
        writeToStandardError(*buffer, SEVERITIES[severity], message);
    else
        ::syslog(LOG_USER | SEVERITIES[severity].syslogPriority, "%s: %s", buffer->setName.c_str(), message);
    return 0;
}
