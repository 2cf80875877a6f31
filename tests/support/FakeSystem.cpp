// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/FakeSystem.h"

#include <slog2.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>

#include <pthread.h>
#include <sys/types.h>

namespace
{

constexpr int SESSION_FD = 4711;
std::mutex messagesMutex;

/// True as many times as the count.
bool takeOne(std::atomic<int> &count)
{
    int left = count;
    while (left > 0 && !count.compare_exchange_weak(left, left - 1)) {
    }
    return left > 0;
}

/// Fails like a call that is interrupted by a signal, as many times as the test requested.
bool interrupted()
{
    if (FakeSystem::interruptions <= 0)
        return false;
    --FakeSystem::interruptions;
    errno = EINTR;
    return true;
}

} // namespace

FakeSystem::FakeSystem()
{
    messages.clear();
    sessionReads = 0;
    sessionRequest.clear();
}

FakeSystem::~FakeSystem()
{
    now = -1;
    session = nullptr;
    acceptedBytes = SIZE_MAX;
    refusedThreads = 0;
}

// Default visibility: the sanitizers' libraries call some of these too.
#pragma GCC visibility push(default)
extern "C" {

time_t __real_time(time_t *out);
int __real_open(const char *path, int flags, ...);
ssize_t __real_read(int fd, void *bytes, size_t count);
ssize_t __real_write(int fd, const void *bytes, size_t count);

time_t __wrap_time(time_t *out)
{
    return FakeSystem::now < 0 ? __real_time(out) : FakeSystem::now;
}

int __wrap_open(const char *path, int flags, ...)
{
    if (std::strcmp(path, "/pps/services/pim/session?wait") == 0) {
        errno = ENOENT;
        return FakeSystem::session ? SESSION_FD : -1;
    }
    va_list arguments;
    va_start(arguments, flags);
    const int mode = va_arg(arguments, int);
    va_end(arguments);
    return __real_open(path, flags, mode);
}

ssize_t __wrap_read(int fd, void *bytes, size_t count)
{
    if (fd != SESSION_FD)
        return __real_read(fd, bytes, count);
    if (interrupted())
        return -1;
    ++FakeSystem::sessionReads;
    const size_t length = std::min(count, std::strlen(FakeSystem::session));
    std::memcpy(bytes, FakeSystem::session, length);
    return static_cast<ssize_t>(length);
}

ssize_t __wrap_write(int fd, const void *bytes, size_t count)
{
    if (fd != SESSION_FD)
        return __real_write(fd, bytes, count);
    if (interrupted())
        return -1;
    const size_t accepted = std::min(count, FakeSystem::acceptedBytes);
    FakeSystem::sessionRequest.assign(static_cast<const char *>(bytes), accepted);
    return static_cast<ssize_t>(accepted);
}

int __real_pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*entry)(void *), void *argument);

int __wrap_pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*entry)(void *), void *argument)
{
    return takeOne(FakeSystem::refusedThreads) ? EAGAIN : __real_pthread_create(thread, attributes, entry, argument);
}

int slog2_register(const slog2_buffer_set_config_t *config, slog2_buffer_t *handles, uint32_t)
{
    for (int i = 0; i < config->num_buffers; ++i)
        handles[i] = nullptr;
    return 0;
}

int vslog2f(slog2_buffer_t, uint16_t, uint8_t severity, const char *format, va_list arguments)
{
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    const std::lock_guard<std::mutex> lock(messagesMutex);
    FakeSystem::messages.push_back({severity, text});
    return 0;
}
}
#pragma GCC visibility pop
