// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Channel.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
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

/// Path of a name in the channel folder; empty, with errno set, for an invalid name.
std::string pathOf(const std::string &name)
{
    if (name.empty() || name.find('/') != std::string::npos || name.front() == '.') {
        errno = EINVAL;
        return {};
    }
    return folder() + "/" + name;
}

/// Waits until a socket can take more bytes. False, with errno set, at the deadline.
bool waitForRoom(int fd, Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd writable = {fd, POLLOUT, 0};
        const int ready = left > 0 ? ::poll(&writable, 1, static_cast<int>(left)) : 0;
        if (ready == 0)
            errno = ETIMEDOUT;
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

void advance(iovec &part, std::size_t &done)
{
    const std::size_t step = std::min(done, part.iov_len);
    part.iov_base = static_cast<char *>(part.iov_base) + step;
    part.iov_len -= step;
    done -= step;
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
    std::string path = pathOf(name);
    if (path.size() >= sizeof(sockaddr_un::sun_path)) {
        errno = ENAMETOOLONG;
        return {};
    }
    return path;
}

std::string versionPath(const std::string &name)
{
    const std::string path = pathOf(name);
    return path.empty() ? path : path + ".version";
}

bool isFolderTrusted(uid_t &owner)
{
    struct stat status = {};
    if (::lstat(folder().c_str(), &status) != 0)
        return false;
    owner = status.st_uid;
    const bool isTrusted =
        S_ISDIR(status.st_mode) && (owner == 0 || owner == ::geteuid()) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    if (!isTrusted)
        errno = EACCES;
    return isTrusted;
}

bool isPeerTrusted(int fd, uid_t owner)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return false;
    const bool isTrusted = peer.uid == 0 || peer.uid == owner;
    if (!isTrusted)
        errno = EACCES;
    return isTrusted;
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

bool setTimeout(int fd, int option, Clock::time_point deadline)
{
    using std::chrono::microseconds;
    const auto left = std::chrono::duration_cast<microseconds>(deadline - Clock::now());
    if (left.count() <= 0) {
        errno = ETIMEDOUT;
        return false;
    }
    // At least a millisecond: 0 means no timeout.
    const auto wait = std::max(left, microseconds(1000)).count();
    timeval timeout = {};
    timeout.tv_sec = static_cast<time_t>(wait / 1000000);
    timeout.tv_usec = static_cast<suseconds_t>(wait % 1000000);
    return ::setsockopt(fd, SOL_SOCKET, option, &timeout, sizeof timeout) == 0;
}

bool sendMessage(int fd, const void *bytes, std::uint32_t length, Clock::time_point deadline)
{
    iovec parts[] = {{&length, sizeof length}, {const_cast<void *>(bytes), length}};
    msghdr message = {};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    while (parts[0].iov_len + parts[1].iov_len > 0) {
        // A blocking send restarts its timeout with every piece that the peer takes, so do not block here.
        const ssize_t sent = ::sendmsg(fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno == EAGAIN && waitForRoom(fd, deadline))
            continue;
        if (sent < 0 && errno != EINTR)
            return false;
        auto done = static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
        for (iovec &part : parts)
            advance(part, done);
    }
    return true;
}

ssize_t receiveSome(int fd, iovec first, iovec second, Clock::time_point deadline)
{
    iovec parts[] = {first, second};
    msghdr message = {};
    message.msg_iov = parts;
    message.msg_iovlen = 2;
    while (setTimeout(fd, SO_RCVTIMEO, deadline)) {
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
