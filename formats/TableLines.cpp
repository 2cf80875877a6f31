// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "TableLines.h"

#include "Input.h"

#include <algorithm>
#include <utility>

namespace formats
{

namespace
{

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

} // namespace

TableLines::TableLines(Input &input)
    : m_input(input)
{
    if (input.head().startsWith("\xFF\xFE") || input.head().startsWith("\xFE\xFF"))
        m_decoder.reset(QTextCodec::codecForName("UTF-16")->makeDecoder());
}

QByteArray TableLines::next()
{
    int searched = m_position;
    while (true) {
        const auto *end = std::find_if(m_bytes.constData() + searched, m_bytes.constData() + m_bytes.size(), isLineEnd);
        searched = static_cast<int>(end - m_bytes.constData());
        char buffer[16 * 1024];
        const bool isLong = static_cast<std::size_t>(searched - m_position) > MAX_ITEM_SIZE;
        const bool isWhole = searched < m_bytes.size();
        const std::size_t count = isWhole || isLong ? 0 : m_input.read(buffer, sizeof buffer);
        if (count == 0) {
            const int start = std::exchange(m_position, isWhole ? searched + 1 : searched);
            m_firstEnd = m_firstEnd < 0 ? m_position : m_firstEnd;
            return m_bytes.mid(start, m_position - start);
        }
        const int forgotten = std::exchange(m_row, 0);
        m_bytes.remove(0, forgotten);
        m_position -= forgotten;
        searched -= forgotten;
        m_firstEnd -= m_firstEnd < 0 ? 0 : forgotten;
        const int size = static_cast<int>(count);
        m_bytes += m_decoder ? m_decoder->toUnicode(buffer, size).toUtf8() : QByteArray(buffer, size);
    }
}

void TableLines::beginRow()
{
    m_row = m_position;
    m_firstEnd = -1;
}

void TableLines::rewind()
{
    m_position = std::max(m_firstEnd, 0);
    // Skips the rest of a line that is too long.
    while (m_position > 0 && !isLineEnd(m_bytes[m_position - 1]) && !next().isEmpty())
        beginRow();
    beginRow();
}

} // namespace formats
