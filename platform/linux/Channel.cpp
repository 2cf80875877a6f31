// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Channel.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace vela::system::channel
{

namespace
{

std::string environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

/// Bounds the next receive; at least a millisecond, since 0 would mean to wait for ever.
bool setReceiveTimeout(int fd, Clock::time_point deadline)
{
    using std::chrono::microseconds;
    const auto left = std::chrono::duration_cast<microseconds>(deadline - Clock::now());
    if (left.count() <= 0) {
        errno = ETIMEDOUT;
        return false;
    }
    const auto wait = std::max(left, microseconds(1000)).count();
    timeval timeout = {};
    timeout.tv_sec = static_cast<time_t>(wait / 1000000);
    timeout.tv_usec = static_cast<suseconds_t>(wait % 1000000);
    return ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout) == 0;
}

} // namespace

std::string folder()
{
    if (std::string chosen = environment("VELA_CHANNEL_DIR"); !chosen.empty())
        return chosen;
    if (std::string runtime = environment("XDG_RUNTIME_DIR"); !runtime.empty())
        return runtime + "/vela";
    return "/run/vela";
}

std::string socketPath(const std::string &name)
{
    if (name.empty() || name.find('/') != std::string::npos || name.front() == '.') {
        errno = EINVAL;
        return {};
    }
    std::string path = folder() + "/" + name;
    if (path.size() >= sizeof(sockaddr_un::sun_path)) {
        errno = ENAMETOOLONG;
        return {};
    }
    return path;
}

int Descriptor::release()
{
    return std::exchange(m_fd, -1);
}

void Descriptor::reset(int fd)
{
    const int saved = errno;
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = fd;
    errno = saved;
}

bool sendMessage(int fd, const void *bytes, std::uint32_t length)
{
    iovec parts[] = {{&length, sizeof length}, {const_cast<void *>(bytes), length}};
    msghdr message = {};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    while (parts[0].iov_len + parts[1].iov_len > 0) {
        const ssize_t sent = ::sendmsg(fd, &message, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0)
            return false;
        auto done = static_cast<std::size_t>(sent);
        for (iovec &part : parts) {
            const std::size_t step = std::min(done, part.iov_len);
            part.iov_base = static_cast<char *>(part.iov_base) + step;
            part.iov_len -= step;
            done -= step;
        }
    }
    return true;
}

ssize_t receiveSome(int fd, iovec first, iovec second, Clock::time_point deadline)
{
    iovec parts[] = {first, second};
    msghdr message = {};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    while (setReceiveTimeout(fd, deadline)) {
        const ssize_t received = ::recvmsg(fd, &message, 0);
        if (received >= 0)
            return received;
        if (errno != EINTR && errno != EAGAIN)
            return -1;
    }
    return -1;
}

bool receiveAll(int fd, void *bytes, std::size_t length, Clock::time_point deadline)
{
    auto *next = static_cast<char *>(bytes);
    while (length > 0) {
        const ssize_t received = receiveSome(fd, {next, length}, {nullptr, 0}, deadline);
        if (received < 0)
            return false;
        if (received == 0) {
            errno = ECONNRESET;
            return false;
        }
        next += received;
        length -= static_cast<std::size_t>(received);
    }
    return true;
}

} // namespace vela::system::channel
