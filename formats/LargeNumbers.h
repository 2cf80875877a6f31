// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

/// A JSON text in which numbers that no double can hold are texts, and other numbers are written so that RapidJSON
/// reads them: it refuses some by their exponent alone. Adds a sentence to `losses` for the first number that became a
/// text.
QByteArray withLargeNumbersAsTexts(const QByteArray &json, QStringList &losses);

} // namespace formats
