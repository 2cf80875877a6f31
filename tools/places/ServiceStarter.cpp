// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ServiceStarter.h"

#include "Report.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <msgclient.h>

#include <sys/prctl.h>
#include <unistd.h>

namespace tool
{

namespace
{

constexpr int START_TIMEOUT_MS = 10000;
constexpr int STOP_TIMEOUT_MS = 10000;
constexpr int OPEN_FLAGS = 2;

/// A child process that ends with this process, even after a crash, and ignores Ctrl-C on the terminal.
class ChildProcess : public QProcess
{
protected:
    void setupChildProcess() override
    {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::setpgid(0, 0);
    }
};

/// The program of the service: beside this program, else in the PATH.
QString serviceProgram()
{
    const QString self = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    const QString beside = QFileInfo(self).absolutePath() + QStringLiteral("/placesd");
    return QFileInfo(beside).isExecutable() ? beside : QStandardPaths::findExecutable(QStringLiteral("placesd"));
}

bool canOpen(const char *channel)
{
    _msgclient_open *opened = msgclient_open(channel, 0, OPEN_FLAGS);
    msgclient_close(opened);
    return opened != nullptr;
}

} // namespace

ServiceStarter::ServiceStarter() = default;

ServiceStarter::~ServiceStarter()
{
    if (!m_service)
        return;
    m_service->terminate();
    m_service->waitForFinished(STOP_TIMEOUT_MS);
}

bool ServiceStarter::isServiceRunning()
{
    return canOpen("places") || canOpen("places.external");
}

bool ServiceStarter::start()
{
    const QString program = serviceProgram();
    m_channelFolder = std::make_unique<QTemporaryDir>();
    if (program.isEmpty()) {
        complain(QStringLiteral("placesd"),
                 QStringLiteral("no places service is running, and placesd is neither beside this program nor in the "
                                "PATH; install placesd, or start a service"));
        return false;
    }
    if (!m_channelFolder->isValid()) {
        complain(
            m_channelFolder->path(),
            QStringLiteral("no folder for the channels of a places service: %1").arg(m_channelFolder->errorString()));
        return false;
    }
    qputenv("VELA_CHANNEL_DIR", QFile::encodeName(m_channelFolder->path()));
    m_service = std::make_unique<ChildProcess>();
    m_service->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_service->start(program, QStringList());
    for (int waited = 0; waited < START_TIMEOUT_MS && m_service->state() != QProcess::NotRunning; waited += 10) {
        if (isServiceRunning()) {
            std::fprintf(stderr, "places: no places service is running; started one for this command\n");
            return true;
        }
        m_service->waitForFinished(10);
    }
    complain(program, QStringLiteral("no places service is running, and this one did not start within %1 seconds; "
                                     "start it on its own to see the cause")
                          .arg(START_TIMEOUT_MS / 1000));
    return false;
}

} // namespace tool
