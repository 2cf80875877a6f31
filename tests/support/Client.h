// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/SanitizerReport.h"

#include <gtest/gtest.h>

#include <QtCore/QProcess>
#include <QtCore/QStringList>

#include <string>

/// Result of a program.
struct Outcome
{
    int status;
    std::string out;
    std::string err;
};

/// Runs one of our programs like a user, with `input` on its standard input.
inline Outcome run(const char *program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(PROGRAMS "/") + QLatin1String(program), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    const std::string errors = process.readAllStandardError().toStdString();
    expectNoSanitizerReport(errors);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(), errors};
}

/// Runs the client.
inline Outcome places(const QStringList &arguments, const QByteArray &input = {})
{
    return run("places", arguments, input);
}

inline Outcome places(const char *arguments, const QByteArray &input = {})
{
    return places(QString::fromUtf8(arguments).split(QLatin1Char(' ')), input);
}
