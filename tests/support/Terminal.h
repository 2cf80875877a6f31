// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

/// A pseudo-terminal of 20 rows and 80 columns with a process on it.
class Terminal
{
public:
    /// @param work the code of the process; it does not return.
    explicit Terminal(const std::function<void()> &work)
    {
        const struct winsize size = {20, 80, 0, 0};
        EXPECT_EQ(::openpty(&m_master, &m_slave, nullptr, nullptr, &size), 0);
        m_modes = modes();
        m_process = ::fork();
        if (m_process != 0)
            return;
        ::login_tty(m_slave);
        ::setenv("TERM", "xterm", 1);
        work();
        ::_exit(99);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal()
    {
        if (m_process > 0 && ::kill(m_process, SIGKILL) == 0)
            ::waitpid(m_process, nullptr, 0);
        ::close(m_slave);
        ::close(m_master);
    }

    [[nodiscard]] pid_t process() const { return m_process; }
    void type(const std::string &keys) const
    {
        EXPECT_EQ(::write(m_master, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    void resize(unsigned short rows, unsigned short columns) const
    {
        const struct winsize size = {rows, columns, 0, 0};
        EXPECT_EQ(::ioctl(m_master, TIOCSWINSZ, &size), 0);
    }

    /// Waits until the process writes this text after the last call. False after a minute.
    bool shows(const std::string &text)
    {
        std::size_t found = std::string::npos;
        waitUntil([&] { return (found = m_output.find(text, m_seen)) != std::string::npos; });
        if (found == std::string::npos)
            return false;
        m_seen = found + text.size();
        return true;
    }

    /// Waits for the end of the process. Returns its status as waitpid() does; -1 when it does not end.
    int wait()
    {
        int status = -1;
        waitUntil([&] { return ::waitpid(m_process, &status, WNOHANG) == m_process; });
        if (status != -1)
            m_process = -1;
        read(0);
        return status;
    }

    [[nodiscard]] std::string output() const { return m_output; }
    /// True when the terminal has its original settings.
    [[nodiscard]] bool isRestored() const { return modes() == m_modes; }

private:
    [[nodiscard]] std::string modes() const
    {
        struct termios modes = {};
        EXPECT_EQ(::tcgetattr(m_slave, &modes), 0);
        return std::to_string(modes.c_iflag) + ' ' + std::to_string(modes.c_oflag) + ' ' + std::to_string(modes.c_lflag)
               + ' ' + std::string(std::begin(modes.c_cc), std::end(modes.c_cc));
    }

    void read(int milliseconds)
    {
        struct pollfd poll = {m_master, POLLIN, 0};
        char buffer[4096];
        while (::poll(&poll, 1, milliseconds) > 0 && (poll.revents & POLLIN) != 0) {
            const ssize_t count = ::read(m_master, buffer, sizeof buffer);
            if (count <= 0)
                return;
            m_output.append(buffer, static_cast<std::size_t>(count));
            milliseconds = 0;
        }
    }

    void waitUntil(const std::function<bool()> &condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!condition() && std::chrono::steady_clock::now() < end)
            read(20);
    }

    int m_master = -1;
    int m_slave = -1;
    std::string m_modes;
    pid_t m_process = -1;
    std::string m_output;
    std::size_t m_seen = 0;
};
