// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTextCodec>
#include <QtCore/QTextDecoder>

#include <memory>

namespace formats
{

class Input;

/// Lines of a table. UTF-16, detected by its byte order mark, is converted to UTF-8; other bytes are not changed. A
/// line ends after a line feed or carriage return. Memory is limited by the size of a row, which the caller limits.
class TableLines
{
public:
    explicit TableLines(Input &input);

    /// True when the file is UTF-16.
    [[nodiscard]] bool isUtf16() const { return m_decoder != nullptr; }
    /// Reads the next line, or a part of a line longer than MAX_ITEM_SIZE. Empty at the end.
    QByteArray next();
    /// Starts a row with the next line. Releases the lines before it.
    void beginRow();
    /// Goes back to the second line of the row and starts a row there.
    void rewind();

private:
    Input &m_input;
    std::unique_ptr<QTextDecoder> m_decoder;
    QByteArray m_bytes;
    int m_row = 0;       ///< Start of the row.
    int m_firstEnd = -1; ///< End of its first line; negative while that is not read.
    int m_position = 0;  ///< Start of the next line.
};

} // namespace formats
