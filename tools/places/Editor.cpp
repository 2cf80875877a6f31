// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Editor.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>

#include <csignal>

namespace tool
{

namespace
{

/// A process with the default actions for SIGINT and SIGQUIT, which this process ignores meanwhile.
class EditorProcess : public QProcess
{
protected:
    void setupChildProcess() override
    {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGQUIT, SIG_DFL);
    }
};

/// Ignores a signal while the object exists.
class IgnoredSignal
{
public:
    explicit IgnoredSignal(int signal)
        : m_signal(signal)
        , m_before(std::signal(signal, SIG_IGN))
    {}
    ~IgnoredSignal() { std::signal(m_signal, m_before); }
    IgnoredSignal(const IgnoredSignal &) = delete;
    IgnoredSignal &operator=(const IgnoredSignal &) = delete;

private:
    const int m_signal;
    void (*const m_before)(int);
};

QString editorCommand()
{
    for (const char *variable : {"VISUAL", "EDITOR"}) {
        if (QString command = QString::fromLocal8Bit(qgetenv(variable)); !command.trimmed().isEmpty())
            return command;
    }
    return QStringLiteral("vi");
}

} // namespace

Editor::Editor()
    : m_path(m_folder.filePath(QStringLiteral("place.geojson")))
{}

QString Editor::write(const QByteArray &text) const
{
    if (!m_folder.isValid())
        return m_folder.errorString();
    QFile file(m_path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)
                           && file.write(text) == text.size() && file.flush();
    return isWritten ? QString() : file.errorString();
}

QString Editor::read(QByteArray &text) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    text = file.readAll();
    return file.error() == QFile::NoError ? QString() : file.errorString();
}

/// The command may contain arguments, so a shell parses it.
QString Editor::run() const
{
    const IgnoredSignal interrupt(SIGINT);
    const IgnoredSignal quit(SIGQUIT);
    const QString command = editorCommand();
    EditorProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.start(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-c"), command + QStringLiteral(" \"$@\""), command, m_path});
    const bool hasEnded = process.waitForFinished(-1);
    if (hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    return QStringLiteral("the editor failed: %1; nothing was changed").arg(command);
}

} // namespace tool
