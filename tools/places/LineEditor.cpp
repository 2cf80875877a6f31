// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "LineEditor.h"

#include "TerminalText.h"

#include <QtCore/QTextBoundaryFinder>

#include <algorithm>

namespace tool
{

namespace
{

/// Maximum length of a term in the service, in UTF-16 units.
constexpr int LONGEST_TEXT = 4096;

} // namespace

LineEditor::LineEditor(const QString &text)
    : m_text(text)
    , m_cursor(text.size())
{}

void LineEditor::insert(const QString &text)
{
    if (m_text.size() + text.size() > LONGEST_TEXT)
        return;
    m_text.insert(m_cursor, text);
    putCursor(m_cursor + text.size());
}

void LineEditor::setText(const QString &text)
{
    *this = LineEditor(text);
}

void LineEditor::moveLeft()
{
    m_cursor = boundaryBefore(m_cursor);
}

void LineEditor::moveRight()
{
    m_cursor = boundaryBehind(m_cursor);
}

void LineEditor::eraseLeft()
{
    eraseBack(boundaryBefore(m_cursor));
}

void LineEditor::eraseRight()
{
    m_text.remove(m_cursor, boundaryBehind(m_cursor) - m_cursor);
    putCursor(m_cursor);
}

void LineEditor::eraseWord()
{
    int start = m_cursor;
    while (start > 0 && m_text[start - 1] == QLatin1Char(' '))
        --start;
    while (start > 0 && m_text[start - 1] != QLatin1Char(' '))
        --start;
    eraseBack(start);
}

void LineEditor::eraseToStart()
{
    eraseBack(0);
}

LineEditor::View LineEditor::view(int columns)
{
    const QString shown = printable(m_text);
    const auto width = [&](int from, int to) { return columnsOf(shown.mid(from, to - from)); };
    m_first = boundaryBefore(std::min(m_first, m_cursor) + 1);
    // Scroll back to the left while the text fits.
    for (int before = boundaryBefore(m_first); m_first > 0 && width(before, shown.size()) < columns;
         before = boundaryBefore(m_first))
        m_first = before;
    int column = width(m_first, m_cursor);
    while (m_first < m_cursor && column >= columns) {
        const int next = boundaryBehind(m_first);
        column -= width(m_first, next);
        m_first = next;
    }
    int end = m_cursor;
    for (int next = boundaryBehind(end); next > end && width(m_first, next) <= columns; next = boundaryBehind(end))
        end = next;
    return {shown.mid(m_first, end - m_first), column};
}

int LineEditor::boundaryBefore(int index) const
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text);
    finder.setPosition(std::min(index, m_text.size()));
    return std::max(0, finder.toPreviousBoundary());
}

int LineEditor::boundaryBehind(int index) const
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text);
    finder.setPosition(index);
    const int next = finder.toNextBoundary();
    return next < 0 ? m_text.size() : next;
}

void LineEditor::eraseBack(int start)
{
    m_text.remove(start, m_cursor - start);
    putCursor(start);
}

void LineEditor::putCursor(int index)
{
    m_cursor = index == 0 ? 0 : boundaryBehind(boundaryBefore(index));
}

} // namespace tool
