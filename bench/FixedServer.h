// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace bench
{

/// Answers every request on the channel "places" with the same bytes, on one thread.
class FixedServer
{
public:
    /// @param reply the length of the reply and the reply.
    explicit FixedServer(std::string reply)
        : m_reply(std::move(reply))
    {
        ::mkdtemp(m_folder);
        ::setenv("VELA_CHANNEL_DIR", m_folder, 1);
        m_address.sun_family = AF_UNIX;
        std::strcpy(m_address.sun_path, (std::string(m_folder) + "/places").c_str());
        m_listener.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (::bind(m_listener.get(), reinterpret_cast<const sockaddr *>(&m_address), sizeof m_address) != 0
            || ::listen(m_listener.get(), 10) != 0)
            throw std::system_error(errno, std::generic_category(), m_address.sun_path);
        m_thread = std::thread([this] { serve(); });
    }
    FixedServer(const FixedServer &) = delete;
    FixedServer &operator=(const FixedServer &) = delete;
    ~FixedServer()
    {
        ::shutdown(m_listener.get(), SHUT_RDWR);
        m_thread.join();
        std::filesystem::remove_all(m_folder);
    }
    [[nodiscard]] const sockaddr_un &address() const { return m_address; }

private:
    void serve()
    {
        std::array<char, 4096> request = {};
        for (;;) {
            const vela::system::channel::Descriptor client(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!client.isOpen())
                return;
            if (::read(client.get(), request.data(), request.size()) > 0)
                benchmark::DoNotOptimize(::write(client.get(), m_reply.data(), m_reply.size()));
        }
    }

    const std::string m_reply;
    char m_folder[32] = "/tmp/benchXXXXXX";
    sockaddr_un m_address = {};
    vela::system::channel::Descriptor m_listener;
    std::thread m_thread;
};

} // namespace bench
