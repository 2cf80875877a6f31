// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <string>

class QProcess;

/// A places service for a test, with a database and channels in a temporary folder.
class Placesd
{
public:
    explicit Placesd(const QStringList &arguments = {}, const char *program = "placesd");
    ~Placesd();

    /// @param wrapper a command that runs the service, with arguments; empty for none.
    void start(QStringList wrapper = {});
    /// Stops the service, which must exit cleanly.
    void stop();
    /// Kills the running service with SIGKILL.
    void kill();
    /// Stops the service until resume().
    void pause();
    void resume();
    void signal(int number);
    /// Waits until the log contains a text; fails after a minute.
    void awaitLog(const char *text) const;
    /// The log of the service. The destructor repeats it on standard error.
    [[nodiscard]] std::string log() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] int pid() const;
    /// Memory in megabytes from a field of /proc/PID/status: "VmRSS:" is the current value, "VmHWM:" the maximum.
    [[nodiscard]] int memory(const char *field) const;
    [[nodiscard]] QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    /// Exchanges raw bytes over its own connection. Returns the reply; empty when there is none.
    static std::string exchange(const std::string &request, const char *channel = "places");
    /// The return code of a raw exchange; -1 when there is no reply.
    static int code(const std::string &request, const char *channel = "places");

private:
    const QStringList m_arguments;
    const QString m_program;
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_process;
};
