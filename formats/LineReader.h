// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Input.h"

#include <QtCore/QByteArray>

#include <algorithm>

namespace formats
{

/// Splits an input into lines. Uses the memory of one line.
class LineReader
{
public:
    explicit LineReader(Input &input)
        : m_input(input)
    {}

    /// Reads the next line without its line feed. A line longer than MAX_ITEM_SIZE is truncated. False at the end.
    bool next(QByteArray &line)
    {
        line.clear();
        QByteArray piece;
        bool isAtEnd = true;
        while (nextPiece(piece, BUFFER_SIZE)) {
            isAtEnd = false;
            const bool isLast = piece.endsWith('\n');
            if (static_cast<std::size_t>(line.size()) <= MAX_ITEM_SIZE)
                line.append(piece.constData(), piece.size() - (isLast ? 1 : 0));
            if (isLast)
                break;
        }
        return !isAtEnd;
    }

    /// Reads the next line with its line feed. A line longer than `most` bytes comes in pieces. False at the end.
    bool nextPiece(QByteArray &piece, int most)
    {
        piece.clear();
        while (piece.size() < most && fill()) {
            const int end = m_buffer.indexOf('\n', m_at);
            const int length = std::min((end < 0 ? m_buffer.size() : end + 1) - m_at, most - piece.size());
            piece.append(m_buffer.constData() + m_at, length);
            m_at += length;
            if (piece.endsWith('\n'))
                return true;
        }
        return !piece.isEmpty();
    }

private:
    bool fill()
    {
        if (m_at < m_buffer.size())
            return true;
        m_buffer.resize(BUFFER_SIZE);
        m_buffer.resize(static_cast<int>(m_input.read(m_buffer.data(), BUFFER_SIZE)));
        m_at = 0;
        return !m_buffer.isEmpty();
    }

    static constexpr int BUFFER_SIZE = 64 * 1024;

    Input &m_input;
    QByteArray m_buffer;
    int m_at = 0;
};

} // namespace formats
