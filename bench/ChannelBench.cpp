// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FixedServer.h"
#include "protocol/Protocol.h"
#include "Ratios.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>

using vela::platform::places::Protocol;

namespace
{

constexpr char REQUEST_TAG[] = "a tag of twenty chars";
/// Length, return code and reply type.
constexpr std::array<int, 3> REPLY = {8, 0, 263};
/// Length, then the request of Protocol::addTag(): header, id and tag.
constexpr std::size_t REQUEST_SIZE = 4 + 12 + 8 + 4 + sizeof REQUEST_TAG - 1;

bench::FixedServer *server = nullptr;

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
        benchmark::DoNotOptimize(
            ::connect(fd, reinterpret_cast<const sockaddr *>(&server->address()), sizeof server->address()));
        benchmark::DoNotOptimize(::write(fd, request.data(), request.size()));
        benchmark::DoNotOptimize(::read(fd, reply.data(), reply.size()));
        ::close(fd);
    }
}
BENCHMARK(bareSocket);

} // namespace

int main(int argc, char **argv)
{
    bench::FixedServer running(std::string(reinterpret_cast<const char *>(REPLY.data()), sizeof REPLY));
    server = &running;
    return bench::runAndPrint(
        argc, argv, {{"one operation / socket, connect, write, read, close", "operation", "bareSocket", 1.15}});
}
