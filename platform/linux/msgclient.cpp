// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "msgclient.h"

#include "Channel.h"
#include "Export.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>

namespace channel = vela::system::channel;
using channel::Clock;

struct _msgclient_open
{
    channel::Descriptor socket;
    /// A truncated reply: its full length, and its first bytes, which are already received.
    std::uint32_t pendingLength = 0;
    std::vector<char> pendingBytes;
};

namespace
{

constexpr int FAILED = -1;

/// Sets the same errno for "no socket" and "no listener": in both cases there is no service. Requests contain names and
/// positions, so the peer must be the folder's owner or root; the folder may change after its check.
channel::Descriptor connectTo(const std::string &path)
{
    uid_t owner = 0;
    channel::Descriptor socket;
    if (channel::isFolderTrusted(owner))
        socket.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen()) {
        if (errno == ENOTDIR)
            errno = ENOENT;
        return socket;
    }

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const auto deadline = Clock::now() + channel::EXCHANGE_TIMEOUT;
    int result = -1;
    do {
        // connect() blocks when many clients are waiting.
        if (!channel::setTimeout(socket.get(), SO_SNDTIMEO, deadline))
            break;
        result = ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        if (errno == ECONNREFUSED || errno == ENOTDIR)
            errno = ENOENT;
        socket.reset();
    } else if (!channel::isPeerTrusted(socket.get(), owner)) {
        socket.reset();
    }
    return socket;
}

/// Keeps a reply that does not fit the caller's buffer, with the bytes received so far.
int keepPending(_msgclient_open &client, std::uint32_t length, const void *arrived, std::size_t count)
{
    const auto *bytes = static_cast<const char *>(arrived);
    client.pendingBytes.assign(bytes, bytes + count);
    client.pendingLength = length;
    return MSGCLIENT_TRUNCATED;
}

int receiveReply(_msgclient_open &client, void *reply, std::size_t capacity, int *replyLength,
                 Clock::time_point deadline)
{
    const int fd = client.socket.get();
    // The length and usually the whole reply arrive together.
    std::uint32_t length = 0;
    const ssize_t received = channel::receiveSome(fd, {&length, sizeof length}, {reply, capacity}, deadline);
    if (received <= 0)
        return FAILED;
    const auto count = static_cast<std::size_t>(received);
    if (count < sizeof length
        && !channel::receiveAll(fd, reinterpret_cast<char *>(&length) + count, sizeof length - count, deadline))
        return FAILED;
    const std::size_t arrived = count < sizeof length ? 0 : count - sizeof length;
    if (length > INT_MAX || arrived > length)
        return FAILED;

    *replyLength = static_cast<int>(length);
    if (length > capacity)
        return keepPending(client, length, reply, arrived);
    return channel::receiveAll(fd, static_cast<char *>(reply) + arrived, length - arrived, deadline) ? MSGCLIENT_OK
                                                                                                     : FAILED;
}

} // namespace

VELA_SYSTEM_EXPORT _msgclient_open *msgclient_open(const char *name, int, int)
{
    try {
        const std::string path = channel::socketPath(name ? name : "");
        if (path.empty())
            return nullptr;
        channel::Descriptor socket = connectTo(path);
        if (!socket.isOpen())
            return nullptr;
        auto client = std::make_unique<_msgclient_open>();
        client->socket = std::move(socket);
        return client.release();
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return nullptr;
    }
}

VELA_SYSTEM_EXPORT int msgclient_putget(_msgclient_open *client, const void *request, int request_length, void *reply,
                                        int reply_capacity, int *reply_length, int)
{
    if (!client || !request || request_length < 0 || reply_capacity < 0 || !reply_length || client->pendingLength > 0)
        return FAILED;
    try {
        const auto deadline = Clock::now() + channel::EXCHANGE_TIMEOUT;
        if (!channel::sendMessage(client->socket.get(), request, static_cast<std::uint32_t>(request_length), deadline))
            return FAILED;
        return receiveReply(*client, reply, static_cast<std::size_t>(reply_capacity), reply_length, deadline);
    } catch (const std::bad_alloc &) {
        return FAILED;
    }
}

VELA_SYSTEM_EXPORT int msgclient_get(_msgclient_open *client, int, void *reply, int reply_capacity, int *reply_length,
                                     int)
{
    if (!client || client->pendingLength == 0 || reply_capacity < 0 || !reply || !reply_length)
        return FAILED;
    const std::size_t length = client->pendingLength;
    *reply_length = static_cast<int>(length);
    if (length > static_cast<std::size_t>(reply_capacity))
        return MSGCLIENT_TRUNCATED;

    const std::size_t arrived = client->pendingBytes.size();
    std::copy_n(client->pendingBytes.begin(), arrived, static_cast<char *>(reply));
    client->pendingLength = 0;
    client->pendingBytes.clear();
    return channel::receiveAll(client->socket.get(), static_cast<char *>(reply) + arrived, length - arrived,
                               Clock::now() + channel::EXCHANGE_TIMEOUT)
               ? MSGCLIENT_OK
               : FAILED;
}

VELA_SYSTEM_EXPORT int msgclient_close(_msgclient_open *client)
{
    delete client;
    return 0;
}
