// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "TerminalText.h"

#include <algorithm>
#include <cwchar>

namespace tool
{

namespace
{

bool controlsTerminal(QChar c)
{
    const ushort code = c.unicode();
    return c.category() == QChar::Other_Control || code == 0x061C || code == 0x200E || code == 0x200F
           || (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

/// The width of the character at `index` in columns. Advances `index` past it.
int takeCharacter(const QString &text, int &index)
{
    uint character = text[index].unicode();
    const QChar next = index + 1 < text.size() ? text[index + 1] : QChar();
    if (text[index].isHighSurrogate() && next.isLowSurrogate()) {
        character = QChar::surrogateToUcs4(text[index], next);
        ++index;
    }
    ++index;
    // As wcwidth() of the C library. An unknown character is shown as one replacement character.
    const int columns = ::wcwidth(static_cast<wchar_t>(character));
    return columns < 0 ? 1 : columns;
}

} // namespace

QString printable(QString text)
{
    std::replace_if(text.begin(), text.end(), controlsTerminal, QLatin1Char(' '));
    return text;
}

QByteArray printableJson(const QByteArray &json)
{
    // White space between tokens. JSON contains no other control characters below DEL, but CSV may.
    static const QString BLANKS = QStringLiteral("\t\n\r");
    QString text;
    const QString characters = QString::fromUtf8(json);
    for (const QChar c : characters) {
        if (controlsTerminal(c) && !BLANKS.contains(c))
            text += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            text += c;
    }
    return text.toUtf8();
}

int columnsOf(const QString &text)
{
    int columns = 0;
    for (int i = 0; i < text.size();)
        columns += takeCharacter(text, i);
    return columns;
}

QString cell(const QString &text, int columns)
{
    QString shown = printable(text);
    const int needed = columnsOf(shown);
    if (needed <= columns)
        return shown + QString(columns - needed, QLatin1Char(' '));
    int taken = 0;
    int end = 0;
    for (int next = 0; next < shown.size(); end = next) {
        const int width = takeCharacter(shown, next);
        if (taken + width > columns - 1)
            break;
        taken += width;
    }
    shown.truncate(end);
    return shown + QChar(0x2026) + QString(columns - 1 - taken, QLatin1Char(' '));
}

} // namespace tool
