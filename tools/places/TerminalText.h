// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Text on its way to a terminal. What places hold was written by anybody.
namespace tool
{

/// The text with a blank for each character that would steer a terminal, end a line, or turn the order of what stands
/// around it: control characters, separators of lines, and the bidirectional controls (UAX #9).
QString printable(QString text);

/// The same JSON value with the escape \uXXXX for each of these characters that JSON allows within a string.
QByteArray printableJson(const QByteArray &json);

/// The columns that a text takes in a terminal: two for a wide character, none for a combining one.
int columnsOf(const QString &text);

/// The text, printable, cut or filled to so many columns. "…" stands for what is cut off.
QString cell(const QString &text, int columns);

} // namespace tool
