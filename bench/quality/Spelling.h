// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace bench
{

/// A text without accents: "Lodz" for "Łódź". Letters of other scripts are unchanged.
QString withoutAccents(const QString &text);

/// The same without case, for comparisons.
QString folded(const QString &text);

/// A text without umlauts: "Koeln" for "Köln".
QString withDigraphs(const QString &text);

/// The script of the first letter; QChar::Script_Unknown when there is none.
QChar::Script scriptOf(const QString &text);

} // namespace bench
