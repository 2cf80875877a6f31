// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/Format.h"
#include "formats/Input.h"

#include <gtest/gtest.h>

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryFile>

#include <vector>

/// The output of a format's reader.
struct FormatFile
{
    std::vector<formats::ReadPlace> members;
    QStringList notes;
    QString problem;
};

inline FormatFile readFile(const char *format, const QByteArray &bytes, formats::ReadOptions options = {})
{
    QTemporaryFile file;
    EXPECT_TRUE(file.open() && file.write(bytes) == bytes.size() && file.flush());
    formats::Input input(file.fileName());
    FormatFile read;
    options.note = [&](const QString &note) { read.notes.append(note); };
    read.problem = formats::formatByName(QLatin1String(format))->read(input, options, [&](formats::ReadPlace member) {
        read.members.push_back(std::move(member));
        return true;
    });
    return read;
}

/// The file that a format's writer writes for places.
inline QByteArray writeFile(const char *format, const std::vector<const vela::platform::places::Place *> &places)
{
    QBuffer out;
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    const auto writer = formats::formatByName(QLatin1String(format))->makeWriter(out);
    EXPECT_EQ(writer->begin(), QString());
    for (const auto *place : places)
        EXPECT_EQ(writer->write(*place), QString());
    EXPECT_EQ(writer->end(), QString());
    return out.data();
}
