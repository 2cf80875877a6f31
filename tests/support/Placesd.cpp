// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Placesd.h"

#include "support/SanitizerReport.h"

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QThread>

#include <csignal>
#include <cstring>
#include <iostream>
#include <msgclient.h>

Placesd::Placesd(const QStringList &arguments, const char *program)
    : m_arguments(arguments)
    , m_program(QStringLiteral(PROGRAMS "/") + QLatin1String(program))
{
    qputenv("VELA_CHANNEL_DIR", m_folder.path().toLocal8Bit());
    qputenv("VELA_LOG", "stderr");
    start();
}

Placesd::~Placesd()
{
    if (isRunning())
        stop();
    const std::string written = log();
    std::cerr << written;
    expectNoSanitizerReport(written);
}

void Placesd::stop()
{
    m_process->terminate();
    EXPECT_TRUE(m_process->waitForFinished(20000));
    EXPECT_EQ(m_process->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_process->exitCode(), 0);
}

void Placesd::start(QStringList wrapper)
{
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedOutputChannel);
    m_process->setStandardErrorFile(path("log"), QIODevice::Append);
    wrapper += QStringList{m_program, QStringLiteral("--database"), path("places.db")} + m_arguments;
    m_process->start(wrapper.takeFirst(), wrapper);
    ASSERT_TRUE(m_process->waitForStarted());
    for (int i = 0; i < 1000 && exchange({}).empty(); ++i)
        ASSERT_FALSE(m_process->waitForFinished(10)) << log();
}

void Placesd::kill()
{
    m_process->kill();
    m_process->waitForFinished();
    EXPECT_EQ(m_process->exitCode(), SIGKILL) << "it had ended before";
}

void Placesd::signal(int number)
{
    ASSERT_TRUE(isRunning()) << "0 would signal the tests themselves";
    ::kill(pid(), number);
}

void Placesd::pause()
{
    signal(SIGSTOP);
}

void Placesd::resume()
{
    signal(SIGCONT);
}

std::string Placesd::log() const
{
    QFile file(path("log"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

void Placesd::awaitLog(const char *text) const
{
    for (int i = 0; i < 6000 && log().find(text) == std::string::npos; ++i)
        QThread::msleep(10);
    EXPECT_NE(log().find(text), std::string::npos) << text;
}

bool Placesd::isRunning() const
{
    return m_process->state() == QProcess::Running;
}

int Placesd::pid() const
{
    return static_cast<int>(m_process->processId());
}

int Placesd::memory(const char *field) const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid()));
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf(field) + static_cast<int>(std::strlen(field))).simplified().split(' ').first().toInt()
           / 1024;
}

std::string Placesd::exchange(const std::string &request, const char *channel)
{
    _msgclient_open *client = msgclient_open(channel, 0, 2);
    if (!client)
        return {};
    std::string reply(1024 * 1024, '\0');
    int length = 0;
    const int status = msgclient_putget(client, request.data(), static_cast<int>(request.size()), reply.data(),
                                        static_cast<int>(reply.size()), &length, 0);
    msgclient_close(client);
    return status == MSGCLIENT_OK ? reply.substr(0, static_cast<std::size_t>(length)) : std::string();
}

int Placesd::code(const std::string &request, const char *channel)
{
    const std::string reply = exchange(request, channel);
    int code = -1;
    if (reply.size() >= sizeof code)
        std::memcpy(&code, reply.data(), sizeof code);
    return code;
}
