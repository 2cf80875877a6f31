// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "LargeNumbers.h"

#include "Geometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace formats
{

namespace
{

bool isOfNumber(char c)
{
    return (c >= '0' && c <= '9') || std::strchr("+-.eE", c) != nullptr;
}

/// True for a number that RapidJSON may refuse: with an exponent, or with many digits.
bool isSuspicious(const QByteArray &number)
{
    constexpr int MANY_DIGITS = 300;
    return number.size() > MANY_DIGITS || number.contains('e') || number.contains('E');
}

} // namespace

QByteArray withLargeNumbersAsTexts(const QByteArray &json, QStringList &losses)
{
    QByteArray out;
    bool inString = false;
    for (int at = 0; at < json.size();) {
        const char c = json[at];
        const bool isNumber = !inString && (c == '-' || (c >= '0' && c <= '9'));
        if (!isNumber) {
            const bool isEscape = inString && c == '\\' && at + 1 < json.size();
            inString = inString != (c == '"');
            out += c;
            if (isEscape)
                out += json[at + 1];
            at += isEscape ? 2 : 1;
            continue;
        }
        const char *end = std::find_if_not(json.begin() + at, json.end(), isOfNumber);
        const QByteArray number = json.mid(at, static_cast<int>(end - json.begin()) - at);
        at += number.size();
        const double value = isSuspicious(number) ? number.toDouble() : 0;
        if (!isSuspicious(number)) {
            out += number;
        } else if (std::isfinite(value)) {
            out += QByteArray::number(value, 'e', 16);
        } else {
            out += '"' + number + '"';
            if (losses.isEmpty())
                losses.append(QStringLiteral("the number %1 is too large and is kept as a text")
                                  .arg(quoted(QString::fromLatin1(number))));
        }
    }
    return out;
}

} // namespace formats
