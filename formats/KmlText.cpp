// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KmlText.h"

#include "HtmlText.h"
#include "Vocabulary.h"
#include "XmlText.h"

namespace formats
{

QString toKmlText(const QString &name, const QString &text)
{
    const QString stored = toXmlText(name, text);
    return name == QLatin1String(vocabulary::DESCRIPTION) ? htmlToText(toKmlDescription(stored)) : stored;
}

QString toKmlDescription(const QString &text)
{
    return htmlToText(text) == text ? text : text.toHtmlEscaped();
}

} // namespace formats
