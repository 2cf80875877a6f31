// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ServedFiles.h"

#include <QtCore/QProcess>

#include <iostream>

namespace bench
{

ServedFiles::ServedFiles(const QStringList &files, bool areStored)
    : m_service(QStringList{QStringLiteral("--gazetteer")} + (areStored ? QStringList{QString()} : files))
{
    if (!areStored)
        return;
    QProcess client;
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    client.setStandardOutputFile(QProcess::nullDevice());
    client.start(QStringLiteral(PROGRAMS "/places"),
                 QStringList{QStringLiteral("--no-start"), QStringLiteral("import")} + files);
    if (!client.waitForFinished(-1) || client.exitCode() != 0)
        std::cerr << "quality_bench: the places cannot all be imported\n";
}

} // namespace bench
