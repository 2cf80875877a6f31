// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/ReasonText.h"

#include <algorithm>

namespace orix_places_protocol
{

QString lineOf(const char *utf8, int size)
{
    const auto isControl = [](QChar c) {
        return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    QString line = QString::fromUtf8(utf8, size);
    std::replace_if(line.begin(), line.end(), isControl, QLatin1Char(' '));
    return line;
}

} // namespace orix_places_protocol
