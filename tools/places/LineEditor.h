// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace tool
{

/// A line of text that the user edits. The cursor stands before, between or behind grapheme clusters (UAX #29): what
/// the user sees as one character, with its accents, is passed over and erased as one.
class LineEditor
{
public:
    explicit LineEditor(const QString &text);

    [[nodiscard]] const QString &text() const { return m_text; }

    /// Inserts a text before the cursor; without effect when the line becomes longer than the service
    /// takes as a term.
    void insert(const QString &text);
    /// Replaces the line; the cursor stands behind it.
    void setText(const QString &text);
    void moveLeft();
    void moveRight();
    void moveToStart() { m_cursor = 0; }
    void moveToEnd() { m_cursor = m_text.size(); }
    void eraseLeft();
    void eraseRight();
    /// Erases the word before the cursor and the blanks behind it.
    void eraseWord();
    void eraseToStart();

    struct View
    {
        QString text;
        int cursor = 0; ///< Column of the cursor.
    };
    /// The part of the line, printable, that fits in so many columns with the cursor, which takes one. It moves along
    /// the line when the cursor would leave it.
    View view(int columns);

private:
    // The boundary next to an index; the start or the end of the line where there is none.
    [[nodiscard]] int boundaryBefore(int index) const;
    [[nodiscard]] int boundaryBehind(int index) const;
    void eraseBack(int start);
    /// Puts the cursor at an index, or behind the cluster there: a change may join what is on both sides of it.
    void putCursor(int index);

    QString m_text;
    int m_cursor;
    int m_first = 0; ///< Index of the first character that is shown.
};

} // namespace tool
