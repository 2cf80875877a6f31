// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace formats
{

/// A text as an XML file stores it: no white space at its ends, line feeds as line ends, and U+FFFD for characters that
/// XML does not allow. A KeepText.
QString toXmlText(const QString &name, const QString &text);

/// The shortest decimal number that reads back as the same double, without an exponent (xsd:decimal).
QString toXmlDecimal(double number);

} // namespace formats
