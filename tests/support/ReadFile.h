// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/Format.h"
#include "formats/Input.h"

#include <gtest/gtest.h>

#include <places/Place.h>

#include <QtCore/QTemporaryFile>

#include <string>
#include <vector>

/// The result of reading a file with these bytes.
struct ReadFile
{
    std::vector<formats::ReadPlace> members;
    std::string problem;

    /// @param name file name with the extension.
    ReadFile(const QByteArray &bytes, const char *name, const formats::ReadOptions &options = {})
    {
        QTemporaryFile file(QStringLiteral("/tmp/XXXXXX") + QLatin1String(name));
        EXPECT_TRUE(file.open() && file.write(bytes) == bytes.size() && file.flush());
        formats::Input input(file.fileName());
        problem = formats::formatOf(input)
                      .read(input, options,
                            [this](formats::ReadPlace member) {
                                members.push_back(std::move(member));
                                return true;
                            })
                      .toStdString();
    }

    /// A line for each member: "NAME LATITUDE LONGITUDE", its problem, or its kind; then its losses.
    [[nodiscard]] std::string lines() const
    {
        constexpr const char *KINDS[] = {"place", "line", "area", "track", "route"};
        QString text;
        for (const formats::ReadPlace &member : members) {
            text += member.problem;
            if (member.place) {
                const auto position = member.place->primaryCoordinates();
                text += QStringLiteral("%1 %2 %3")
                            .arg(member.place->name())
                            .arg(position.latitude())
                            .arg(position.longitude());
            } else if (member.problem.isEmpty()) {
                text += QLatin1String(KINDS[static_cast<int>(member.kind)]);
            }
            for (const QString &loss : member.losses)
                text += QStringLiteral(" / ") + loss;
            text += QLatin1Char('\n');
        }
        return text.toStdString();
    }
};
