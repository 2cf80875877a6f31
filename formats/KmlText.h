// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Vocabulary.h"

#include <QtCore/QString>

namespace formats
{

/// The children of a placemark that map to one property each.
constexpr struct
{
    const char *element;
    const char *property;
} KML_CHILDREN[] = {
    {"name", vocabulary::NAME},
    {"address", vocabulary::LABEL},
    {"phoneNumber", vocabulary::PHONE},
};

/// A text as a KML file stores it: as XML, and a description also as HTML. A KeepText.
QString toKmlText(const QString &name, const QString &text);

/// The HTML of a description; htmlToText() restores the text. `text` comes from toKmlText().
QString toKmlDescription(const QString &text);

} // namespace formats
