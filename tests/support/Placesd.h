// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <string>

class QProcess;

/// A places service of the test's own, on a database and channels in a temporary folder.
class Placesd
{
public:
    explicit Placesd(const QStringList &arguments = {}, const char *program = "placesd");
    ~Placesd();

    /// @param wrapper the command that runs it, with arguments; none when it is empty.
    void start(QStringList wrapper = {});
    /// Asks it to end, which it has to do in good order.
    void stop();
    /// Ends it at once with SIGKILL. It has to be running.
    void kill();
    /// Has it do nothing until resume().
    void pause();
    void resume();
    void signal(int number);
    /// Waits until the log has a text, which it has to have within a minute.
    void awaitLog(const char *text) const;
    /// What it wrote to the log; the destructor repeats it on standard error.
    [[nodiscard]] std::string log() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] int pid() const;
    /// Memory in megabytes, by a field of /proc/PID/status: "VmRSS:" is what is resident now, "VmHWM:" the most so far.
    [[nodiscard]] int memory(const char *field) const;
    [[nodiscard]] QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    /// Exchanges raw bytes on a channel of its own. Returns the reply; empty when there is none.
    static std::string exchange(const std::string &request, const char *channel = "places");
    /// The return code of a raw exchange; -1 when there is no reply.
    static int code(const std::string &request, const char *channel = "places");

private:
    const QStringList m_arguments;
    const QString m_program;
    QTemporaryDir m_folder;
    std::unique_ptr<QProcess> m_process;
};
