// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Channel.h"

#include <dataversion.h>
#include <gmock/gmock.h>
#include <msgclient.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <numeric>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace channel = vela::system::channel;
using channel::Descriptor;

namespace
{

/// A channel folder of the test's own, with one server in it that takes one connection.
class MsgclientTest : public testing::Test
{
protected:
    MsgclientTest()
    {
        ::mkdtemp(m_folder);
        ::setenv("VELA_CHANNEL_DIR", m_folder, 1);
    }
    ~MsgclientTest() override
    {
        if (m_server.joinable())
            m_server.join();
        std::filesystem::remove_all(m_folder);
    }

    [[nodiscard]] std::string path() const { return std::string(m_folder) + "/test"; }

    Descriptor listen()
    {
        Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, path().c_str());
        EXPECT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket.get(), 5), 0);
        EXPECT_TRUE(channel::setTimeout(socket.get(), SO_RCVTIMEO, channel::Clock::now() + std::chrono::seconds(20)));
        return socket;
    }

    /// Hands the first connection to `serve` on a thread of its own.
    void serve(std::function<void(int fd)> serve)
    {
        m_server = std::thread([listener = listen(), serve = std::move(serve)] {
            const Descriptor client(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            serve(client.get());
        });
    }

    /// Reads a request on the server's side.
    static std::string takeRequest(int fd)
    {
        std::uint32_t length = 0;
        const auto deadline = channel::Clock::now() + std::chrono::seconds(10);
        if (!channel::receiveAll(fd, &length, sizeof length, deadline))
            return "no request";
        std::string request(length, '\0');
        EXPECT_TRUE(channel::receiveAll(fd, request.data(), length, deadline));
        return request;
    }

    static void reply(int fd, const std::string &bytes)
    {
        EXPECT_TRUE(channel::sendMessage(fd, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                         channel::Clock::now() + channel::EXCHANGE_TIMEOUT));
    }

    /// The reply to the one request of a client; "" on failure.
    std::string answerTo(const std::string &request, std::size_t capacity)
    {
        _msgclient_open *client = msgclient_open("test", 0, 2);
        const int status = exchange(client, request, capacity);
        msgclient_close(client);
        return status == MSGCLIENT_OK ? m_reply.substr(0, static_cast<std::size_t>(m_length)) : "";
    }
    int exchange(_msgclient_open *client, const std::string &request, std::size_t capacity)
    {
        m_reply.assign(capacity, '?');
        return msgclient_putget(client, request.data(), static_cast<int>(request.size()), m_reply.data(),
                                static_cast<int>(capacity), &m_length, 0);
    }

    std::string m_reply;
    int m_length = -1;

private:
    char m_folder[32] = "/tmp/channelXXXXXX";
    std::thread m_server;
};

} // namespace

TEST_F(MsgclientTest, FindsItsFolderByTheEnvironment)
{
    uid_t owner = 0;
    EXPECT_TRUE(channel::isFolderTrusted(owner));
    EXPECT_EQ(owner, ::geteuid());
    ::setenv("XDG_RUNTIME_DIR", "/tmp/none", 1);
    ::setenv("VELA_CHANNEL_DIR", "", 1);
    EXPECT_EQ(channel::folder(), "/tmp/none/vela");
    EXPECT_FALSE(channel::isFolderTrusted(owner));
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(channel::folder(), "/run/vela");
}

TEST_F(MsgclientTest, NobodyListeningIsNoSuchChannel)
{
    EXPECT_EQ(msgclient_open("test", 0, 2), nullptr);
    EXPECT_EQ(errno, ENOENT) << "no socket";
    listen();
    EXPECT_EQ(msgclient_open("test", 0, 2), nullptr);
    EXPECT_EQ(errno, ENOENT) << "a socket that was left behind";
    for (const char *name : {"", "../test", "a/b", ".hidden"}) {
        EXPECT_EQ(msgclient_open(name, 0, 2), nullptr);
        EXPECT_EQ(errno, EINVAL) << name;
    }
    EXPECT_EQ(msgclient_open(std::string(200, 'n').c_str(), 0, 2), nullptr);
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(MsgclientTest, SendsNothingWhereOthersCouldListen)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder or a socket to another user";
    constexpr uid_t OTHER = 12345;
    const std::string folder = path().substr(0, path().rfind('/'));
    const auto error = [&](uid_t owner, mode_t mode, uid_t listening) {
        EXPECT_EQ(::chown(folder.c_str(), owner, 0), 0);
        EXPECT_EQ(::chmod(folder.c_str(), mode), 0);
        ::unlink(path().c_str());
        const Descriptor listener = listen();
        // The peer is who calls listen().
        EXPECT_EQ(::seteuid(listening) + ::listen(listener.get(), 5) + ::seteuid(0), 0);
        _msgclient_open *client = msgclient_open("test", 0, 2);
        const int problem = client ? 0 : errno;
        msgclient_close(client);
        return problem;
    };
    EXPECT_EQ(error(0, 0700, 0), 0);
    EXPECT_EQ(error(0, 0755, 0), 0);
    EXPECT_EQ(error(0, 0777, 0), EACCES) << "a folder that others may write to";
    EXPECT_EQ(error(0, 01777, 0), EACCES) << "the sticky bit lets others add a socket";
    EXPECT_EQ(error(0, 0770, 0), EACCES) << "or that a group may write to";
    EXPECT_EQ(error(OTHER, 0755, 0), EACCES) << "somebody else's folder";
    EXPECT_EQ(error(0, 0755, OTHER), EACCES) << "somebody else's socket in our folder";
    EXPECT_EQ(error(0, 0700, 0), 0);
    std::filesystem::rename(folder, folder + ".real");
    std::filesystem::create_directory_symlink(folder + ".real", folder);
    EXPECT_EQ(msgclient_open("test", 0, 2), nullptr);
    EXPECT_EQ(errno, EACCES) << "a link in its place";
    std::filesystem::remove_all(folder + ".real");
}

TEST_F(MsgclientTest, TellsTheDataVersionBesideAChannel)
{
    char path[256] = "";
    EXPECT_EQ(dataversion_get("test"), 0) << "no file";
    ASSERT_EQ(dataversion_path("test", path, sizeof path), 0);
    EXPECT_EQ(path, channel::versionPath("test"));
    const int size = static_cast<int>(std::strlen(path));
    EXPECT_EQ(dataversion_path("test", path, size + 1), 0);
    for (const int tooSmall : {size, 0, -1}) {
        EXPECT_EQ(dataversion_path("test", path, tooSmall), -1);
        EXPECT_EQ(errno, ENAMETOOLONG) << tooSmall;
    }
    EXPECT_EQ(dataversion_path("test", nullptr, 100) + dataversion_path("../x", path, sizeof path), -2);
    EXPECT_EQ(dataversion_path(nullptr, path, sizeof path) + static_cast<int>(dataversion_get(nullptr)), -1);
    std::ofstream(path) << "12345678";
    EXPECT_EQ(dataversion_get("test"), 0x3837363534333231);
    std::ofstream(path) << "1234567";
    EXPECT_EQ(dataversion_get("test"), 0) << "half a number";
}

TEST_F(MsgclientTest, OneHandleCarriesSeveralExchanges)
{
    serve([](int fd) {
        for (int i = 0; i < 3; ++i)
            reply(fd, takeRequest(fd) + "!");
    });
    _msgclient_open *client = msgclient_open("test", 0, 2);
    ASSERT_NE(client, nullptr);
    for (const std::string request : {"one", "", "three"}) {
        EXPECT_EQ(exchange(client, request, 100), MSGCLIENT_OK);
        EXPECT_EQ(m_reply.substr(0, static_cast<std::size_t>(m_length)), request + "!");
    }
    msgclient_close(client);
}

TEST_F(MsgclientTest, AReplyThatDoesNotFitStaysPendingUntilItIsTaken)
{
    std::string large(300000, ' ');
    std::iota(large.begin(), large.end(), '\0');
    serve([&](int fd) {
        takeRequest(fd);
        reply(fd, large);
        takeRequest(fd);
        reply(fd, "next");
    });
    EXPECT_EQ(MSGCLIENT_OK, 0) << "the platform's own numbers";
    EXPECT_EQ(MSGCLIENT_TRUNCATED, 240);
    _msgclient_open *client = msgclient_open("test", 0, 2);
    ASSERT_EQ(exchange(client, "give", 1000), MSGCLIENT_TRUNCATED);
    EXPECT_EQ(m_length, 300000);
    std::string whole(large.size(), '?');
    EXPECT_EQ(exchange(client, "too early", 10), -1);
    EXPECT_EQ(msgclient_get(client, 0, whole.data(), 10, &m_length, 0), MSGCLIENT_TRUNCATED);
    EXPECT_EQ(msgclient_get(client, 0, whole.data(), 300000, &m_length, 0), MSGCLIENT_OK);
    EXPECT_EQ(whole, large);
    EXPECT_EQ(msgclient_get(client, 0, whole.data(), 300000, &m_length, 0), -1) << "nothing is pending any more";
    EXPECT_EQ(exchange(client, "on", 4), MSGCLIENT_OK);
    EXPECT_EQ(m_reply, "next");
    msgclient_close(client);
}

TEST_F(MsgclientTest, AReplyInDribsAndDrabsArrivesWhole)
{
    serve([](int fd) {
        takeRequest(fd);
        for (const char c : std::string("\x9\0\0\0in pieces", 13)) {
            EXPECT_EQ(::write(fd, &c, 1), 1);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    EXPECT_EQ(answerTo("slowly", 9), "in pieces");
}

TEST_F(MsgclientTest, ASignalDoesNotEndAnExchange)
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGUSR1, &action, nullptr);
    const pthread_t waiting = ::pthread_self();
    serve([&](int fd) {
        const std::string request = takeRequest(fd);
        for (int i = 0; i < 20; ++i) {
            ::pthread_kill(waiting, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        reply(fd, request);
    });
    EXPECT_EQ(answerTo("still here", 100), "still here");
}

TEST_F(MsgclientTest, AServerThatGoesAwayIsAFailureAndNoSignal)
{
    const std::vector<std::function<void(int)>> ways = {
        [](int) {},
        [](int fd) { takeRequest(fd); },
        [](int fd) {
            takeRequest(fd);
            const std::uint32_t length = 100;
            EXPECT_EQ(::write(fd, &length, 2), 2);
        },
        [](int fd) {
            takeRequest(fd);
            const std::uint32_t length = 0xFFFFFFFF;
            EXPECT_EQ(::write(fd, &length, sizeof length), 4);
        },
        [](int fd) {
            takeRequest(fd);
            EXPECT_EQ(::write(fd, "\4\0\0\0more than four", 18), 18);
        },
    };
    for (const auto &way : ways) {
        std::filesystem::remove(path());
        std::thread server([listener = listen(), &way] {
            const Descriptor client(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            way(client.get());
        });
        _msgclient_open *client = msgclient_open("test", 0, 2);
        EXPECT_EQ(exchange(client, std::string(1000, 'r'), 50), -1);
        msgclient_close(client);
        server.join();
    }
}

TEST_F(MsgclientTest, AServerThatTakesARequestInDribsAndDrabsDoesNotHoldUpItsClient)
{
    int ends[2] = {-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    const Descriptor client(ends[0]);
    Descriptor server(ends[1]);
    std::thread reader([&server] {
        std::vector<char> bytes(4096);
        while (::read(server.get(), bytes.data(), bytes.size()) > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    });
    const std::vector<char> request(4 * 1024 * 1024);
    const auto start = channel::Clock::now();
    EXPECT_FALSE(channel::sendMessage(client.get(), request.data(), static_cast<std::uint32_t>(request.size()),
                                      start + std::chrono::milliseconds(200)));
    EXPECT_EQ(errno, ETIMEDOUT);
    EXPECT_LT(channel::Clock::now() - start, std::chrono::seconds(3)) << "all of it would take five";
    char byte = 0;
    EXPECT_FALSE(channel::receiveAll(client.get(), &byte, 1, channel::Clock::now() + std::chrono::milliseconds(20)));
    EXPECT_EQ(errno, ETIMEDOUT) << "nor does one that says nothing";
    ::shutdown(client.get(), SHUT_RDWR);
    reader.join();
}
