// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Placesd.h"
#include "support/Requests.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

/// Many misbehaving clients at once.
namespace crowd
{

using vela::system::channel::Descriptor;
using Clients = std::vector<Descriptor>;

/// Connects clients of this user, or of another one, which requires root.
inline Clients connectMany(const Placesd &service, const char *channel, int count, uid_t user = ::geteuid())
{
    const bool isOther = user != ::geteuid();
    // The system call itself, because it changes the user of this thread only.
    EXPECT_EQ(isOther ? ::syscall(SYS_setresuid, -1, user, -1) : 0, 0);
    Clients clients;
    for (int i = 0; i < count; ++i)
        clients.push_back(requests::connectTo(service.path(channel).toStdString()));
    EXPECT_EQ(isOther ? ::syscall(SYS_setresuid, -1, 0, -1) : 0, 0);
    return clients;
}

inline void send(const Clients &clients, const std::string &request, std::size_t bytes = std::string::npos)
{
    using namespace wire;
    const std::string framed = (message({i32(static_cast<int>(request.size()))}) + request).substr(0, bytes);
    for (const Descriptor &client : clients) {
        const timeval longest = {0, 50000};
        ::setsockopt(client.get(), SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest);
        for (std::size_t done = 0; done < framed.size();) {
            const ssize_t sent = ::send(client.get(), framed.data() + done, framed.size() - done, MSG_NOSIGNAL);
            if (sent <= 0)
                break;
            done += static_cast<std::size_t>(sent);
        }
    }
}

/// Asks for all places in full.
inline std::string everything()
{
    using namespace requests;
    return find(1000, 0, EVERYTHING, UNSORTED, false);
}

} // namespace crowd
