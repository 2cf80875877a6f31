// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/types.h>
#include <sys/uio.h>

/// Message channels on Linux: a channel is a Unix domain stream socket in the channel folder. A message is a 32-bit
/// length in native byte order and that many bytes.
namespace vela::system::channel
{

using Clock = std::chrono::steady_clock;

/// Timeout of an exchange, of opening a channel and of fetching a pending reply.
constexpr std::chrono::seconds EXCHANGE_TIMEOUT{30};

/// The folder of the channel sockets: $VELA_CHANNEL_DIR, else $XDG_RUNTIME_DIR/vela, else /run/vela.
std::string folder();

/// Path of a channel's socket; empty, with errno set, for an invalid name or a path too long for a socket.
std::string socketPath(const std::string &name);

/// Path of the file with the data version of a channel's service, a 64-bit number in native byte order; empty, with
/// errno set, for an invalid name.
std::string versionPath(const std::string &name);

/// Whether only this process's user and root can create sockets in the channel folder: it is a folder, not a symbolic
/// link, is owned by one of them, and is not writable by others. False with errno set; EACCES when others could.
/// @param owner set to the owner of the folder.
bool isFolderTrusted(uid_t &owner);

/// Whether a connected socket leads to a process of `owner` or root. False with errno set; EACCES for all other users.
bool isPeerTrusted(int fd, uid_t owner);

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int fd = -1)
        : m_fd(fd)
    {}
    Descriptor(Descriptor &&other) noexcept
        : m_fd(other.release())
    {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~Descriptor() { reset(); }

    [[nodiscard]] int get() const { return m_fd; }
    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }
    int release();
    /// Closes the current descriptor and takes `fd`; errno is unchanged.
    void reset(int fd = -1);

private:
    int m_fd;
};

/// Sets the timeout of the next call on a socket: of send and connect for `option` SO_SNDTIMEO, of receive for
/// SO_RCVTIMEO. False, with errno ETIMEDOUT, when the deadline has passed.
bool setTimeout(int fd, int option, Clock::time_point deadline);

/// Sends a whole message until `deadline`; continues after a signal. False, with errno set, on failure.
bool sendMessage(int fd, const void *bytes, std::uint32_t length, Clock::time_point deadline);

/// Receives available bytes to two buffers, one after the other; waits for the first byte until `deadline`. Returns the
/// number of bytes, 0 at the end of the stream, -1 with errno set on failure (ETIMEDOUT without bytes).
ssize_t receiveSome(int fd, iovec first, iovec second, Clock::time_point deadline);

/// Receives exactly `length` bytes. False, with errno set, on failure; ECONNRESET at the end of the stream.
bool receiveAll(int fd, void *bytes, std::size_t length, Clock::time_point deadline);

} // namespace vela::system::channel
