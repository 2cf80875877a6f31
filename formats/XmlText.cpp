// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "XmlText.h"

#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

namespace formats
{

QString toXmlText(const QString & /*name*/, const QString &text)
{
    static const QRegularExpression LINE_END(QStringLiteral("\r\n?"));
    // All characters that XML 1.0 does not allow, except surrogates, which the conversion to UTF-8 replaces.
    static const QRegularExpression NO_CHARACTER(
        QStringLiteral("[\\x{0}-\\x{8}\\x{B}\\x{C}\\x{E}-\\x{1F}\\x{FFFE}\\x{FFFF}]"));
    QString result = QString::fromUtf8(text.toUtf8());
    result.replace(LINE_END, QStringLiteral("\n"));
    result.replace(NO_CHARACTER, QString(QChar(QChar::ReplacementCharacter)));
    return result.trimmed();
}

QString toXmlDecimal(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

} // namespace formats
