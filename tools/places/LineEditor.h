// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace tool
{

/// A line of text with a cursor. The cursor moves and erases by grapheme clusters (UAX #29), that is, by characters
/// with their accents.
class LineEditor
{
public:
    explicit LineEditor(const QString &text);

    [[nodiscard]] const QString &text() const { return m_text; }

    /// Inserts a text before the cursor. Does nothing when the line would become longer than a term may be.
    void insert(const QString &text);
    /// Replaces the line and puts the cursor at its end.
    void setText(const QString &text);
    void moveLeft();
    void moveRight();
    void moveToStart() { m_cursor = 0; }
    void moveToEnd() { m_cursor = m_text.size(); }
    void eraseLeft();
    void eraseRight();
    /// Erases the word before the cursor and the blanks after it.
    void eraseWord();
    void eraseToStart();

    struct View
    {
        QString text;
        int cursor = 0; ///< Column of the cursor.
    };
    /// The printable part of the line that fits in `columns` columns, cursor included. It scrolls with the cursor.
    View view(int columns);

private:
    // The next boundary before or after an index; the start or the end of the line when there is none.
    [[nodiscard]] int boundaryBefore(int index) const;
    [[nodiscard]] int boundaryBehind(int index) const;
    void eraseBack(int start);
    /// Moves the cursor to an index, or to the end of the cluster there: a change may merge the characters on both
    /// sides of it.
    void putCursor(int index);

    QString m_text;
    int m_cursor;
    int m_first = 0; ///< Index of the first visible character.
};

} // namespace tool
