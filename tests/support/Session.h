// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Client.h"
#include "support/Files.h"
#include "support/Placesd.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>

/// Runs the commands of a session file in tests/tools/data/ and compares their output: a command after "$ ", its
/// standard output, its standard error, its exit status. FOLDER is the folder of the service, HERE the current one.
inline void expectSession(const char *file, const Placesd &service)
{
    const QString session =
        QString::fromUtf8(files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/") + QLatin1String(file)));
    const QString folder = service.path("x").chopped(1);
    QString seen;
    for (const QString &line : session.split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1String("$ ")))
            continue;
        const QString arguments = line.mid(2).replace(QLatin1String("FOLDER/"), folder);
        const Outcome outcome = places(arguments.split(QLatin1Char(' ')));
        seen += QStringLiteral("%1\n%2%3[%4]\n")
                    .arg(line, QString::fromStdString(outcome.out), QString::fromStdString(outcome.err),
                         QString::number(outcome.status));
    }
    seen.replace(folder, QStringLiteral("FOLDER/")).replace(QDir::currentPath(), QStringLiteral("HERE"));
    seen.replace(QRegularExpression(QStringLiteral("(?<=Time\":)([1-9]\\d*|\"[^\"]*\")")), QStringLiteral("TIME"));
    EXPECT_EQ(seen.toStdString(), session.toStdString());
}
