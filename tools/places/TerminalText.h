// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Text for a terminal. Stored places may contain any character.
namespace tool
{

/// Replaces characters that control a terminal, end a line or change the text direction by blanks: control characters,
/// line separators and bidirectional controls (UAX #9).
QString printable(QString text);

/// Replaces the same characters in JSON by \uXXXX where JSON allows them in a string.
QByteArray printableJson(const QByteArray &json);

/// The width of a text in a terminal, in columns: two for a wide character, none for a combining one.
int columnsOf(const QString &text);

/// The printable text, cut or padded to `columns`. A cut text ends in "…".
QString cell(const QString &text, int columns);

} // namespace tool
