// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/Format.h"
#include "formats/GeoJsonWriter.h"
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

inline std::unique_ptr<vela::platform::places::Place> placeOf(const QByteArray &feature)
{
    formats::ExactDocument document;
    EXPECT_FALSE(document.read(feature.constData()).IsError()) << feature.constData();
    auto place = std::make_unique<vela::platform::places::Place>();
    EXPECT_EQ(formats::readFeature(document, *place), QString());
    return place;
}

/// The feature that a place is exported as, without the values that every new place has.
inline std::string featureOf(const vela::platform::places::Place &place)
{
    QByteArray text = formats::toGeoJsonFeature(place);
    for (const char *usual : {R"("type":"Feature",)", R"("type":"Point",)", R"(,"favorite":false)",
                              R"(,"lastUsedTime":0)", R"(,"tags":[])", R"(,"aliases":[])", R"(,"private":false)",
                              R"(,"records":[])", R"(,"usageCount":0,"creationTime":0,"updateTime":0)"})
        text.replace(usual, "");
    return text.toStdString();
}
