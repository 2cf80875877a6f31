// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Channel.h"
#include "protocol/Protocol.h"
#include "Ratios.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace channel = vela::system::channel;
using vela::platform::places::Protocol;

namespace
{

constexpr char REQUEST_TAG[] = "a tag of twenty chars";
/// Length, return code and reply type.
constexpr std::array<int, 3> REPLY = {8, 0, 263};
/// Length, then what Protocol::addTag() sends: head, id and tag.
constexpr std::size_t REQUEST_SIZE = 4 + 12 + 8 + 4 + sizeof REQUEST_TAG - 1;

sockaddr_un addressOf(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    return address;
}

/// Answers every request with the same few bytes, on one thread.
class Server
{
public:
    Server()
    {
        ::mkdtemp(m_folder);
        ::setenv("VELA_CHANNEL_DIR", m_folder, 1);
        m_address = addressOf(std::string(m_folder) + "/places");
        m_listener.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        ::bind(m_listener.get(), reinterpret_cast<const sockaddr *>(&m_address), sizeof m_address);
        ::listen(m_listener.get(), 10);
        m_thread = std::thread([this] { serve(); });
    }
    ~Server()
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
            const channel::Descriptor client(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!client.isOpen())
                return;
            if (::read(client.get(), request.data(), request.size()) > 0)
                benchmark::DoNotOptimize(::write(client.get(), REPLY.data(), sizeof REPLY));
        }
    }

    char m_folder[32] = "/tmp/benchXXXXXX";
    sockaddr_un m_address = {};
    channel::Descriptor m_listener;
    std::thread m_thread;
};

Server *server = nullptr;

void operation(benchmark::State &state)
{
    for (auto _ : state) {
        if (Protocol().addTag(42, REQUEST_TAG) != vela::platform::places::Error::Success)
            state.SkipWithError("the operation failed");
    }
}
BENCHMARK(operation);

void bareSocket(benchmark::State &state)
{
    const std::string request(REQUEST_SIZE, 'r');
    std::array<char, 300> reply = {};
    for (auto _ : state) {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ::connect(fd, reinterpret_cast<const sockaddr *>(&server->address()), sizeof server->address());
        benchmark::DoNotOptimize(::write(fd, request.data(), request.size()));
        benchmark::DoNotOptimize(::read(fd, reply.data(), reply.size()));
        ::close(fd);
    }
}
BENCHMARK(bareSocket);

} // namespace

int main(int argc, char **argv)
{
    Server running;
    server = &running;
    return bench::runAndPrint(
        argc, argv, {{"one operation / socket, connect, write, read, close", "operation", "bareSocket", 1.15}});
}
