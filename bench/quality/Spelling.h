// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace bench
{

/// A text as it is typed without accents: "Lodz" for "Łódź". Letters of other scripts stay.
QString withoutAccents(const QString &text);

/// The same without case, to compare texts.
QString folded(const QString &text);

/// A text as it is typed without umlauts: "Koeln" for "Köln".
QString withDigraphs(const QString &text);

/// The script of the first letter; QChar::Script_Unknown where there is none.
QChar::Script scriptOf(const QString &text);

} // namespace bench
