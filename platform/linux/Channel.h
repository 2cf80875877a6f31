// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/types.h>
#include <sys/uio.h>

/// Message channels on Linux: a channel is a Unix domain stream socket in the channel folder, and a message is a 32-bit
/// length in native byte order and that many bytes.
namespace vela::system::channel
{

using Clock = std::chrono::steady_clock;

/// Longest time that an exchange takes, and that opening a channel or fetching a pending reply takes.
constexpr std::chrono::seconds EXCHANGE_TIMEOUT{30};

/// The folder that holds the channels' sockets: $VELA_CHANNEL_DIR, else $XDG_RUNTIME_DIR/vela, else /run/vela.
std::string folder();

/// Path of a channel's socket; empty, with errno set, for a name that cannot be one or a path too long for a socket.
std::string socketPath(const std::string &name);

/// Path of the file that holds the data version of a channel's service, as a 64-bit number in native byte order; empty,
/// with errno set, for a name that cannot be one.
std::string versionPath(const std::string &name);

/// Whether nobody but this process's user and root can put sockets into the channel folder: it is a folder, no symbolic
/// link, belongs to one of them, and others may not write to it. False with errno set, EACCES where others could.
/// @param owner the user it belongs to.
bool isFolderTrusted(uid_t &owner);

/// Whether a connected socket leads to a process of `owner` or of root. False with errno set, EACCES for all others.
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
    /// Closes what is held; errno stays as it was.
    void reset(int fd = -1);

private:
    int m_fd;
};

/// Bounds how long the next call on a socket waits: its sends and its connect with `option` SO_SNDTIMEO, its receives
/// with SO_RCVTIMEO. False, with errno ETIMEDOUT, when the deadline has passed.
bool setTimeout(int fd, int option, Clock::time_point deadline);

/// Writes a message, however many writes it takes, until `deadline`; a signal does not end it. False, with errno set,
/// on failure.
bool sendMessage(int fd, const void *bytes, std::uint32_t length, Clock::time_point deadline);

/// Reads what is there into two buffers, one after the other, waiting for the first byte until `deadline`. Returns the
/// number of bytes, 0 at the end of the stream, -1 with errno set on failure (ETIMEDOUT when nothing came).
ssize_t receiveSome(int fd, iovec first, iovec second, Clock::time_point deadline);

/// Reads exactly `length` bytes. False, with errno set, on failure; the end of the stream is ECONNRESET.
bool receiveAll(int fd, void *bytes, std::size_t length, Clock::time_point deadline);

} // namespace vela::system::channel
