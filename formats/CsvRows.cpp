// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "CsvRows.h"

#include "Input.h"

#include <map>

namespace formats
{

namespace
{

/// The field delimiter: the most frequent candidate in the line, outside quotation marks.
char delimiterOf(const QByteArray &line)
{
    std::map<char, int> counts;
    bool isQuoted = false;
    for (const char c : line) {
        isQuoted ^= c == '"';
        counts[c] += isQuoted ? 0 : 1;
    }
    char best = ',';
    for (const char candidate : {';', '\t', '|'}) {
        if (counts[candidate] > counts[best])
            best = candidate;
    }
    return best;
}

void startParser(csv_parser &parser, char delimiter)
{
    csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI);
    csv_set_delim(&parser, static_cast<unsigned char>(delimiter));
}

} // namespace

CsvRows::CsvRows(Input &input, int mostFields)
    : m_lines(input)
    , m_mostFields(mostFields)
    , m_delimiter(delimiterOf(input.head().left(input.head().indexOf('\n'))))
{
    startParser(m_parser, m_delimiter);
}

CsvRows::~CsvRows()
{
    csv_free(&m_parser);
}

bool CsvRows::next()
{
    m_problem.clear();
    beginRow();
    while (!m_isWhole) {
        const QByteArray line = m_lines.next();
        if (line.isEmpty() && m_size == 0)
            return false;
        if (!feed(line))
            return true;
        const bool isEmpty = m_fields.isEmpty() && m_size == static_cast<std::size_t>(line.size());
        if (isEmpty && line.trimmed().isEmpty())
            beginRow();
    }
    return !m_fields.isEmpty();
}

void CsvRows::beginRow()
{
    m_lines.beginRow();
    m_size = 0;
    m_isWhole = false;
    m_fields.clear();
}

/// Passes a line to the parser; an empty line is the end of the file. False when the row is invalid.
bool CsvRows::feed(const QByteArray &line)
{
    const auto size = static_cast<std::size_t>(line.size());
    m_size += size;
    m_isWhole = line.isEmpty();
    if (m_size > MAX_ITEM_SIZE) {
        fail(QStringLiteral("the row has more than %1 bytes").arg(MAX_ITEM_SIZE));
        return false;
    }
    const bool isParsed = line.isEmpty() ? csv_fini(&m_parser, onField, onRow, this) == 0
                                         : csv_parse(&m_parser, line.constData(), size, onField, onRow, this) == size;
    if (!isParsed)
        fail(QStringLiteral("a quotation mark in the wrong place"));
    return isParsed;
}

void CsvRows::fail(const QString &problem)
{
    m_problem = problem;
    m_lines.rewind();
    csv_free(&m_parser);
    startParser(m_parser, m_delimiter);
}

void CsvRows::onField(void *bytes, std::size_t size, void *self)
{
    auto &rows = *static_cast<CsvRows *>(self);
    if (rows.m_fields.size() <= rows.m_mostFields)
        rows.m_fields.append(QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
}

void CsvRows::onRow(int /*end*/, void *self)
{
    static_cast<CsvRows *>(self)->m_isWhole = true;
}

} // namespace formats
