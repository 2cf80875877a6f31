// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Files.h"

#include <array>
#include <string>
#include <vector>

/// Tables of tests in files below tests/: "=== TABLE", then a line for each row with "=>" between its fields. Lines
/// that start with # are comments.
namespace golden
{

/// The rows of a table. Spaces around a field do not belong to it.
template <std::size_t FIELDS>
std::vector<std::array<std::string, FIELDS>> rows(const char *file, const char *table)
{
    std::vector<std::array<std::string, FIELDS>> rows;
    const QString text = QString::fromUtf8(files::bytesOf(QStringLiteral(SOURCES "/tests/") + QLatin1String(file)));
    const QStringList lines = text.section(QStringLiteral("=== %1\n").arg(QLatin1String(table)), 1, 1)
                                  .section(QStringLiteral("\n=== "), 0, 0)
                                  .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList fields = line.split(QStringLiteral("=>"));
        if (line.startsWith(QLatin1Char('#')))
            continue;
        EXPECT_EQ(fields.size(), static_cast<int>(FIELDS)) << line.toStdString();
        rows.emplace_back();
        for (std::size_t i = 0; i < FIELDS; ++i)
            rows.back()[i] = fields.value(static_cast<int>(i)).trimmed().toStdString();
    }
    EXPECT_FALSE(rows.empty()) << file << " " << table;
    return rows;
}

} // namespace golden
