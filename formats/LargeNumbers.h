// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

/// Rewrites the numbers of a JSON text that RapidJSON would refuse. A number beyond the range of double becomes a text;
/// other numbers get a form that RapidJSON accepts, because it refuses some by their exponent alone. Adds a message to
/// `losses` for the first number that became a text.
QByteArray withLargeNumbersAsTexts(const QByteArray &json, QStringList &losses);

} // namespace formats
