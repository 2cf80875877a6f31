// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "TableLines.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QString>

#include <csv.h>

namespace formats
{

/// Rows of comma-separated values (RFC 4180), one at a time. After an invalid row, reading continues with the line
/// after the first line of that row, so lines that a lone quotation mark made part of the row are read again. A line is
/// read at most three times: only a line with an odd number of quotation marks extends a row, up to the next such line.
/// Memory is limited by the size of a row.
class CsvRows
{
public:
    CsvRows(Input &input, int mostFields);
    CsvRows(const CsvRows &) = delete;
    CsvRows &operator=(const CsvRows &) = delete;
    ~CsvRows();

    /// True when the file is UTF-16.
    [[nodiscard]] bool isUtf16() const { return m_lines.isUtf16(); }
    /// The separator of fields: comma, semicolon, tab or pipe, the most frequent one in the first line.
    [[nodiscard]] char delimiter() const { return m_delimiter; }

    /// Reads the next row that is not empty. False at the end.
    bool next();
    /// Fields of the row, at most `mostFields` + 1; undefined after a problem.
    [[nodiscard]] const QByteArrayList &fields() const { return m_fields; }
    /// Why the row is invalid; empty for a valid one.
    [[nodiscard]] const QString &problem() const { return m_problem; }

private:
    static void onField(void *bytes, std::size_t size, void *self);
    static void onRow(int end, void *self);

    void beginRow();
    bool feed(const QByteArray &line);
    void fail(const QString &problem);

    TableLines m_lines;
    const int m_mostFields;
    char m_delimiter = ',';
    csv_parser m_parser = {};
    std::size_t m_size = 0; ///< Size of the row in bytes.
    bool m_isWhole = false;
    QByteArrayList m_fields;
    QString m_problem;
};

} // namespace formats
